<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="about.version %@">
        <translation>Version %@</translation>
    </message>
    <message id="about.data">
        <translation>Où se trouvent vos données</translation>
    </message>
    <message id="about.settingsPath">
        <translation>Liens et réglages :</translation>
    </message>
    <message id="about.dataFolder">
        <translation>Instantanés :</translation>
    </message>
    <message id="about.showFolder">
        <translation>Afficher</translation>
    </message>
    <message id="calendar.title">
        <translation>Calendrier</translation>
    </message>
    <message id="clipboard.title">
        <translation>Presse-papiers</translation>
    </message>
    <message id="color.red">
        <translation>Rouge</translation>
    </message>
    <message id="color.orange">
        <translation>Orange</translation>
    </message>
    <message id="color.yellow">
        <translation>Jaune</translation>
    </message>
    <message id="color.green">
        <translation>Vert</translation>
    </message>
    <message id="color.cyan">
        <translation>Cyan</translation>
    </message>
    <message id="color.blue">
        <translation>Bleu</translation>
    </message>
    <message id="color.purple">
        <translation>Violet</translation>
    </message>
    <message id="color.pink">
        <translation>Rose</translation>
    </message>
    <message id="color.gray">
        <translation>Gris</translation>
    </message>
    <message id="color.pureRed">
        <translation>Rouge pur</translation>
    </message>
    <message id="color.pureYellow">
        <translation>Jaune pur</translation>
    </message>
    <message id="color.pureGreen">
        <translation>Vert pur</translation>
    </message>
    <message id="color.pureCyan">
        <translation>Cyan pur</translation>
    </message>
    <message id="color.pureBlue">
        <translation>Bleu pur</translation>
    </message>
    <message id="color.pureMagenta">
        <translation>Magenta pur</translation>
    </message>
    <message id="color.black">
        <translation>Noir</translation>
    </message>
    <message id="color.white">
        <translation>Blanc</translation>
    </message>
    <message id="debug.title">
        <translation>Mode débogage</translation>
    </message>
    <message id="debug.subtitle">
        <translation>Essayez Orvelle sur un jeu de données séparé et jetable. Vos propres données restent intactes. Ce mode prend fin quand Orvelle se ferme.</translation>
    </message>
    <message id="debug.enterMode">
        <translation>Activer le mode débogage</translation>
    </message>
    <message id="debug.exitMode">
        <translation>Quitter le mode débogage</translation>
    </message>
    <message id="debug.clearData">
        <translation>Effacer les données…</translation>
    </message>
    <message id="debug.clearTitle">
        <translation>Effacer toutes les données de débogage ?</translation>
    </message>
    <message id="debug.clearMessage">
        <translation>Tout ce qui a été créé en mode débogage sera définitivement supprimé. Vos propres données ne sont pas touchées.</translation>
    </message>
    <message id="debug.clear">
        <translation>Effacer</translation>
    </message>
    <message id="debug.notice">
        <translation>Mode débogage actif : vous voyez un jeu de données séparé.</translation>
    </message>
    <message id="error.import %@">
        <translation>Le fichier n’a pas pu être importé : %@</translation>
    </message>
    <message id="error.importNotAFile">
        <translation>Ce n’est pas un fichier.</translation>
    </message>
    <message id="error.openTitle">
        <translation>Orvelle ne peut pas ouvrir ses réglages</translation>
    </message>
    <message id="error.openNewer %@">
        <translation>« %@ » a été écrit par une version plus récente d’Orvelle. Rien n’a été modifié ; mettez Orvelle à jour.</translation>
    </message>
    <message id="error.openInaccessible %@">
        <translation>« %@ » n’est pas accessible.</translation>
    </message>
    <message id="error.openDamaged %@">
        <translation>« %@ » est endommagé et n’a pas pu être mis de côté.</translation>
    </message>
    <message id="error.openBusy %@">
        <translation>Un autre programme utilise « %@ ». Réessayez.</translation>
    </message>
    <message id="error.openOther %@">
        <translation>« %@ » ne peut pas être ouvert.</translation>
    </message>
    <message id="error.damagedTitle">
        <translation>Vos réglages étaient endommagés</translation>
    </message>
    <message id="error.damagedMessage %@">
        <translation>Orvelle démarre avec des réglages vides. Le fichier endommagé a été conservé sous « %@ ».</translation>
    </message>
    <message id="error.saveTitle">
        <translation>Vos modifications ne peuvent pas être enregistrées</translation>
    </message>
    <message id="error.saveReadOnly">
        <translation>Le dossier des réglages est protégé en écriture. Ce qui était enregistré est intact.</translation>
    </message>
    <message id="error.saveDiskFull">
        <translation>Le disque est plein. Ce qui était enregistré est intact.</translation>
    </message>
    <message id="error.saveBusy">
        <translation>Un autre programme a bloqué les réglages trop longtemps. Ce qui était enregistré est intact.</translation>
    </message>
    <message id="error.saveOther %@">
        <translation>Ce qui était enregistré est intact. Le système indique : %@</translation>
    </message>
    <message id="error.unreadableTitle">
        <translation>Vos liens n’ont pas pu être lus</translation>
    </message>
    <message id="error.unreadableMessage %@">
        <translation>Les liens enregistrés sont conservés intacts sous « %@ ». La fenêtre des réglages peut tenter de les restaurer.</translation>
    </message>
    <message id="icon.folder">
        <translation>Dossier</translation>
    </message>
    <message id="icon.star">
        <translation>Étoile</translation>
    </message>
    <message id="icon.heart">
        <translation>Cœur</translation>
    </message>
    <message id="icon.bookmark">
        <translation>Signet</translation>
    </message>
    <message id="icon.tag">
        <translation>Étiquette</translation>
    </message>
    <message id="icon.flag">
        <translation>Drapeau</translation>
    </message>
    <message id="icon.bolt">
        <translation>Éclair</translation>
    </message>
    <message id="icon.flame">
        <translation>Flamme</translation>
    </message>
    <message id="icon.globe">
        <translation>Globe</translation>
    </message>
    <message id="icon.house">
        <translation>Maison</translation>
    </message>
    <message id="icon.person">
        <translation>Personne</translation>
    </message>
    <message id="icon.gear">
        <translation>Engrenage</translation>
    </message>
    <message id="icon.code">
        <translation>Code</translation>
    </message>
    <message id="icon.terminal">
        <translation>Terminal</translation>
    </message>
    <message id="icon.book">
        <translation>Livre</translation>
    </message>
    <message id="icon.photo">
        <translation>Photo</translation>
    </message>
    <message id="icon.music">
        <translation>Musique</translation>
    </message>
    <message id="icon.film">
        <translation>Film</translation>
    </message>
    <message id="icon.game">
        <translation>Jeux</translation>
    </message>
    <message id="icon.accounting">
        <translation>Comptabilité</translation>
    </message>
    <message id="icon.cup">
        <translation>Tasse</translation>
    </message>
    <message id="icon.cart">
        <translation>Panier</translation>
    </message>
    <message id="icon.briefcase">
        <translation>Mallette</translation>
    </message>
    <message id="icon.hammer">
        <translation>Marteau</translation>
    </message>
    <message id="icon.paintbrush">
        <translation>Pinceau</translation>
    </message>
    <message id="icon.scissors">
        <translation>Ciseaux</translation>
    </message>
    <message id="icon.gift">
        <translation>Cadeau</translation>
    </message>
    <message id="icon.airplane">
        <translation>Avion</translation>
    </message>
    <message id="icon.car">
        <translation>Voiture</translation>
    </message>
    <message id="icon.graduationcap">
        <translation>Études</translation>
    </message>
    <message id="icon.stethoscope">
        <translation>Stéthoscope</translation>
    </message>
    <message id="icon.wrench">
        <translation>Outils</translation>
    </message>
    <message id="icon.archivebox">
        <translation>Archives</translation>
    </message>
    <message id="icon.tray">
        <translation>Corbeille à courrier</translation>
    </message>
    <message id="icon.paperclip">
        <translation>Trombone</translation>
    </message>
    <message id="icon.server">
        <translation>Serveur</translation>
    </message>
    <message id="icon.work">
        <translation>Travail</translation>
    </message>
    <message id="icon.sport">
        <translation>Sport</translation>
    </message>
    <message id="icon.at">
        <translation>Arobase</translation>
    </message>
    <message id="icon.cloud">
        <translation>Nuage</translation>
    </message>
    <message id="icon.soccer">
        <translation>Football</translation>
    </message>
    <message id="icon.wineglass">
        <translation>Verre de vin</translation>
    </message>
    <message id="icon.tshirt">
        <translation>T-shirt</translation>
    </message>
    <message id="icon.diamond">
        <translation>Diamant</translation>
    </message>
    <message id="icon.pawprint">
        <translation>Patte</translation>
    </message>
    <message id="icon.building">
        <translation>Immeuble</translation>
    </message>
    <message id="icon.camera">
        <translation>Appareil photo</translation>
    </message>
    <message id="icon.dumbbell">
        <translation>Haltère</translation>
    </message>
    <message id="icon.networkDrive">
        <translation>Disque réseau</translation>
    </message>
    <message id="icon.network">
        <translation>Réseau</translation>
    </message>
    <message id="icon.lock">
        <translation>Cadenas</translation>
    </message>
    <message id="icon.desktopcomputer">
        <translation>Ordinateur de bureau</translation>
    </message>
    <message id="icon.externaldrive">
        <translation>Disque externe</translation>
    </message>
    <message id="icon.note">
        <translation>Note</translation>
    </message>
    <message id="icon.document">
        <translation>Document</translation>
    </message>
    <message id="icon.plaintext">
        <translation>Texte brut</translation>
    </message>
    <message id="icon.checklist">
        <translation>Liste de tâches</translation>
    </message>
    <message id="icon.list">
        <translation>Liste</translation>
    </message>
    <message id="import.title">
        <translation>Importation</translation>
    </message>
    <message id="import.fileOpenTitle">
        <translation>Importer des liens</translation>
    </message>
    <message id="import.fileOpenMessage %@">
        <translation>Que faire des liens de « %@ » ?</translation>
    </message>
    <message id="import.replaceAll">
        <translation>Tout remplacer</translation>
    </message>
    <message id="import.merge">
        <translation>Fusionner</translation>
    </message>
    <message id="import.sync">
        <translation>Synchroniser</translation>
    </message>
    <message id="menu.settings">
        <translation>Réglages</translation>
    </message>
    <message id="menu.quit">
        <translation>Quitter Orvelle</translation>
    </message>
    <message id="menu.noLinks">
        <translation>Aucun lien pour l’instant</translation>
    </message>
    <message id="menu.empty">
        <translation>Vide</translation>
    </message>
    <message id="menu.quickAdd">
        <translation>Ajouter un lien</translation>
    </message>
    <message id="menu.newLinkShort">
        <translation>Lien</translation>
    </message>
    <message id="menu.quickNote">
        <translation>Nouvelle note</translation>
    </message>
    <message id="menu.newNoteShort">
        <translation>Note</translation>
    </message>
    <message id="menulet.iconTitle">
        <translation>Icône de la zone de notification</translation>
    </message>
    <message id="menulet.iconLink">
        <translation>Lien</translation>
    </message>
    <message id="menulet.iconLinkCircle">
        <translation>Lien cerclé</translation>
    </message>
    <message id="menulet.iconStar">
        <translation>Étoile</translation>
    </message>
    <message id="menulet.iconBolt">
        <translation>Éclair</translation>
    </message>
    <message id="menulet.iconBookmark">
        <translation>Signet</translation>
    </message>
    <message id="menulet.iconCommand">
        <translation>Commande</translation>
    </message>
    <message id="menulet.iconGlobe">
        <translation>Globe</translation>
    </message>
    <message id="menulet.iconSparkle">
        <translation>Étincelle</translation>
    </message>
    <message id="network.title">
        <translation>Réseau</translation>
    </message>
    <message id="note.defaultName">
        <translation>Nouvelle note</translation>
    </message>
    <message id="note.name">
        <translation>Nom de la note</translation>
    </message>
    <message id="note.color">
        <translation>Couleur de la note</translation>
    </message>
    <message id="note.text">
        <translation>Texte de la note</translation>
    </message>
    <message id="note.placeholder">
        <translation>Écrivez ici. Tout est enregistré automatiquement.</translation>
    </message>
    <message id="note.changedElsewhere">
        <translation>Cette note a été modifiée ailleurs. Vous voyez son nouveau texte ; « annuler » rétablit le vôtre.</translation>
    </message>
    <message id="note.conflict">
        <translation>Cette note a été modifiée ailleurs pendant votre saisie.</translation>
    </message>
    <message id="note.keepBoth">
        <translation>Garder les deux</translation>
    </message>
    <message id="note.keepMine">
        <translation>Garder la mienne</translation>
    </message>
    <message id="note.useTheirs">
        <translation>Prendre l’autre</translation>
    </message>
    <message id="note.otherVersion">
        <translation>— Version d’ailleurs —</translation>
    </message>
    <message id="note.gone">
        <translation>Cette note n’est plus dans votre liste. Son texte reste dans cette fenêtre.</translation>
    </message>
    <message id="note.addAgain">
        <translation>Ajouter à nouveau</translation>
    </message>
    <message id="notice.dismiss">
        <translation>Fermer ce message</translation>
    </message>
    <message id="quickAdd.topLevel">
        <translation>Premier niveau du menu</translation>
    </message>
    <message id="quickAdd.address">
        <translation>Adresse ou chemin :</translation>
    </message>
    <message id="quickAdd.urlPlaceholder">
        <translation>https://example.org ou ~/Documents</translation>
    </message>
    <message id="quickAdd.paste">
        <translation>Coller</translation>
    </message>
    <message id="quickAdd.name">
        <translation>Nom :</translation>
    </message>
    <message id="quickAdd.namePlaceholder">
        <translation>Facultatif</translation>
    </message>
    <message id="quickAdd.selectFolder">
        <translation>Groupe :</translation>
    </message>
    <message id="quickAdd.add">
        <translation>Ajouter</translation>
    </message>
    <message id="quickAdd.invalid">
        <translation>Ce n’est ni une adresse ni un chemin qu’Orvelle peut ouvrir.</translation>
    </message>
    <message id="quickAdd.nothingToPaste">
        <translation>Le presse-papiers ne contient ni adresse ni fichier.</translation>
    </message>
    <message id="quit.confirmTitle">
        <translation>Quitter Orvelle ?</translation>
    </message>
    <message id="quit.confirmMessage">
        <translation>Vos liens quitteront la zone de notification jusqu’au prochain démarrage d’Orvelle. Pour les garder, fermez seulement la fenêtre.</translation>
    </message>
    <message id="quit.confirm">
        <translation>Quitter</translation>
    </message>
    <message id="quit.closeWindow">
        <translation>Fermer la fenêtre</translation>
    </message>
    <message id="repair.alertTitle">
        <translation>Des fichiers ou dossiers sont introuvables</translation>
    </message>
    <message id="repair.alertMessage">
        <translation>Orvelle peut les retrouver si vous choisissez un dossier qui les contient.</translation>
    </message>
    <message id="repair.fix">
        <translation>Choisir un dossier…</translation>
    </message>
    <message id="repair.later">
        <translation>Plus tard</translation>
    </message>
    <message id="repair.message">
        <translation>Choisissez un dossier qui contient vos fichiers et dossiers liés</translation>
    </message>
    <message id="repair.prompt">
        <translation>Choisir</translation>
    </message>
    <message id="settings.windowTitle">
        <translation>Réglages d’Orvelle</translation>
    </message>
    <message id="settings.links">
        <translation>Vos liens</translation>
    </message>
    <message id="settings.column.name">
        <translation>Nom</translation>
    </message>
    <message id="settings.column.kind">
        <translation>Type</translation>
    </message>
    <message id="settings.addLink">
        <translation>Ajouter un lien</translation>
    </message>
    <message id="settings.addNote">
        <translation>Nouvelle note</translation>
    </message>
    <message id="settings.open">
        <translation>Ouvrir</translation>
    </message>
    <message id="settings.rename">
        <translation>Renommer</translation>
    </message>
    <message id="settings.remove">
        <translation>Supprimer</translation>
    </message>
    <message id="settings.undo">
        <translation>Annuler</translation>
    </message>
    <message id="settings.redo">
        <translation>Rétablir</translation>
    </message>
    <message id="settings.removed %@">
        <translation>« %@ » a été supprimé.</translation>
    </message>
    <message id="field.clear">
        <translation>Effacer</translation>
    </message>
    <message id="settings.empty.title">
        <translation>Aucun lien pour l’instant</translation>
    </message>
    <message id="settings.empty.message">
        <translation>Ajoutez une adresse web, un fichier ou un dossier : vous l’aurez à un clic dans la zone de notification.</translation>
    </message>
    <message id="settings.rescued.message %@">
        <translation>Des liens enregistrés n’ont pas pu être lus. Ils sont conservés tels quels sous « %@ ».</translation>
    </message>
    <message id="settings.rescued.restore">
        <translation>Réessayer</translation>
    </message>
    <message id="settings.rescued.failedTitle">
        <translation>Les liens restent illisibles</translation>
    </message>
    <message id="settings.rescued.failedMessage %@">
        <translation>Les données sous « %@ » sont endommagées ou proviennent d’une version plus récente d’Orvelle. Elles restent en place.</translation>
    </message>
    <message id="settings.behaviour">
        <translation>Comportement</translation>
    </message>
    <message id="settings.confirmBeforeQuit">
        <translation>Demander avant de quitter</translation>
    </message>
    <message id="settings.widgetOrder">
        <translation>Ordre dans le menu</translation>
    </message>
    <message id="settings.moveUp">
        <translation>Monter</translation>
    </message>
    <message id="settings.moveDown">
        <translation>Descendre</translation>
    </message>
    <message id="sheet.cancel">
        <translation>Annuler</translation>
    </message>
    <message id="sheet.ok">
        <translation>OK</translation>
    </message>
    <message id="systemInfo.title">
        <translation>Système</translation>
    </message>
    <message id="timer.title">
        <translation>Minuteur</translation>
    </message>
    <message id="tray.missingTitle">
        <translation>Aucune zone de notification</translation>
    </message>
    <message id="tray.missingMessage">
        <translation>Orvelle continue de fonctionner, mais ce bureau n’affiche pas d’icône. GNOME a besoin pour cela d’une extension, comme « AppIndicator and KStatusNotifierItem Support ». La commande « orvelle toggle » ouvre aussi le menu ; vous pouvez l’associer à une touche dans les réglages du clavier de votre bureau.</translation>
    </message>
    <message id="type.file">
        <translation>Fichier</translation>
    </message>
    <message id="type.folder">
        <translation>Dossier</translation>
    </message>
    <message id="type.smb">
        <translation>Partage SMB</translation>
    </message>
    <message id="type.afp">
        <translation>Partage AFP</translation>
    </message>
    <message id="type.ftp">
        <translation>Serveur FTP</translation>
    </message>
    <message id="type.nfs">
        <translation>Partage NFS</translation>
    </message>
    <message id="type.vnc">
        <translation>Partage d’écran</translation>
    </message>
    <message id="type.email">
        <translation>Adresse e-mail</translation>
    </message>
    <message id="type.web">
        <translation>Page web</translation>
    </message>
    <message id="type.url">
        <translation>Adresse</translation>
    </message>
    <message id="type.group">
        <translation>Groupe</translation>
    </message>
    <message id="type.note">
        <translation>Note</translation>
    </message>
    <message id="weather.title">
        <translation>Météo</translation>
    </message>
    <message id="welcome.title">
        <translation>Bienvenue dans Orvelle</translation>
    </message>
    <message id="welcome.subtitle">
        <translation>Tout ce que vous ouvrez souvent, à un clic dans la zone de notification.</translation>
    </message>
    <message id="welcome.featureFolders">
        <translation>Dossiers</translation>
    </message>
    <message id="welcome.featureFoldersDesc">
        <translation>Accédez aux dossiers de votre travail.</translation>
    </message>
    <message id="welcome.featureFiles">
        <translation>Fichiers</translation>
    </message>
    <message id="welcome.featureFilesDesc">
        <translation>Ouvrez vos documents avec leur application.</translation>
    </message>
    <message id="welcome.featureWeb">
        <translation>Pages web</translation>
    </message>
    <message id="welcome.featureWebDesc">
        <translation>Rangez vos adresses préférées dans des groupes.</translation>
    </message>
    <message id="welcome.featureNetwork">
        <translation>Emplacements réseau</translation>
    </message>
    <message id="welcome.featureNetworkDesc">
        <translation>Retrouvez disques partagés et serveurs.</translation>
    </message>
    <message id="welcome.start">
        <translation>Commencer</translation>
    </message>
    <message id="welcome.show">
        <translation>Revoir l’accueil…</translation>
    </message>
    <message id="quicklaunch.title">
        <translation>Lancement rapide</translation>
    </message>
    <message id="clipboard.subtitle">
        <translation>Les textes et images copiés récemment.</translation>
    </message>
    <message id="quicklaunch.subtitle">
        <translation>Vos applications favorites, sur une ligne.</translation>
    </message>
    <message id="calendar.subtitle">
        <translation>Les prochains rendez-vous de vos agendas.</translation>
    </message>
    <message id="weather.subtitle">
        <translation>Le temps qu’il fait et qu’il fera.</translation>
    </message>
    <message id="systemInfo.subtitle">
        <translation>Processeur, mémoire et disque en un coup d’œil.</translation>
    </message>
    <message id="network.subtitle">
        <translation>Les débits entrant et sortant.</translation>
    </message>
    <message id="timer.subtitle">
        <translation>Un compte à rebours qui prévient à la fin.</translation>
    </message>
    <message id="widget.show">
        <translation>Afficher dans le menu</translation>
    </message>
    <message id="widget.off">
        <translation>Désactivé</translation>
    </message>
    <message id="widget.menuBarOnly">
        <translation>Seulement dans le menu de l’icône</translation>
    </message>
    <message id="widget.menuBarOnlyHint">
        <translation>Le widget n’apparaît pas dans le menu ouvert par le raccourci clavier.</translation>
    </message>
    <message id="timer.doneTitle">
        <translation>C’est l’heure</translation>
    </message>
    <message id="timer.doneMessage %@">
        <translation>Le minuteur de %@ est terminé.</translation>
    </message>
    <message id="settings.tab.general">
        <translation>&amp;Général</translation>
    </message>
    <message id="settings.tab.widgets">
        <translation>&amp;Widgets</translation>
    </message>
    <message id="settings.tab.sync">
        <translation>&amp;Synchronisation</translation>
    </message>
    <message id="settings.tab.about">
        <translation>À &amp;propos</translation>
    </message>
    <message id="settings.dropHere">
        <translation>Déposer pour importer</translation>
    </message>
    <message id="settings.dropRefused">
        <translation>Seuls un document exporté, un fichier de favoris ou un dossier de liens peuvent être importés.</translation>
    </message>
    <message id="settings.widgetOrderHint">
        <translation>Les widgets suivent cet ordre dans le menu. Déposez-en un sur un autre pour le placer juste au-dessus, ou utilisez les boutons.</translation>
    </message>
    <message id="widget.notYet">
        <translation>Ce widget ne fait pas encore partie de cette version. Sa place dans le menu est conservée.</translation>
    </message>
    <message id="sync.backup">
        <translation>Sauvegarde</translation>
    </message>
    <message id="sync.backupHint">
        <translation>Tous les liens, notes et réglages dans un fichier, à conserver ou à emporter sur un autre ordinateur.</translation>
    </message>
    <message id="sync.export">
        <translation>&amp;Exporter…</translation>
    </message>
    <message id="sync.import">
        <translation>&amp;Importer…</translation>
    </message>
    <message id="sync.bookmarks">
        <translation>Favoris du navigateur</translation>
    </message>
    <message id="sync.bookmarksHint">
        <translation>Le fichier HTML que tout navigateur lit et écrit.</translation>
    </message>
    <message id="sync.exportBookmarks">
        <translation>E&amp;xporter…</translation>
    </message>
    <message id="sync.importBookmarks">
        <translation>I&amp;mporter…</translation>
    </message>
    <message id="sync.linkFolder">
        <translation>Fichiers de liens</translation>
    </message>
    <message id="sync.linkFolderHint">
        <translation>Un dossier de fichiers .desktop, .url ou .webloc, ses sous-dossiers devenant des groupes.</translation>
    </message>
    <message id="sync.importLinkFolder">
        <translation>Importer un &amp;dossier…</translation>
    </message>
    <message id="snapshot.title">
        <translation>Instantanés</translation>
    </message>
    <message id="snapshot.subtitle">
        <translation>Orvelle garde une copie de vos liens avant chaque opération qui en retire. Les 50 dernières sont conservées, puis une par jour pendant 30 jours.</translation>
    </message>
    <message id="snapshot.column.date">
        <translation>Date</translation>
    </message>
    <message id="snapshot.column.items">
        <translation>Éléments</translation>
    </message>
    <message id="snapshot.reason.remove">
        <translation>Une suppression</translation>
    </message>
    <message id="snapshot.reason.replace">
        <translation>Un import remplaçant tout</translation>
    </message>
    <message id="snapshot.reason.import">
        <translation>Un import</translation>
    </message>
    <message id="snapshot.reason.merge">
        <translation>La fusion d’un import</translation>
    </message>
    <message id="snapshot.reason.sync">
        <translation>Une synchronisation</translation>
    </message>
    <message id="snapshot.reason.undo">
        <translation>Une annulation</translation>
    </message>
    <message id="snapshot.reason.redo">
        <translation>Un rétablissement</translation>
    </message>
    <message id="snapshot.reason.restore">
        <translation>La restauration d’un instantané</translation>
    </message>
    <message id="snapshot.reason.other">
        <translation>Une autre modification</translation>
    </message>
    <message id="snapshot.today %@">
        <translation>Aujourd’hui, %@</translation>
    </message>
    <message id="snapshot.yesterday %@">
        <translation>Hier, %@</translation>
    </message>
    <message id="snapshot.oneItem">
        <translation>1 élément</translation>
    </message>
    <message id="snapshot.items %lld">
        <translation>%lld éléments</translation>
    </message>
    <message id="snapshot.restore">
        <translation>&amp;Restaurer</translation>
    </message>
    <message id="snapshot.close">
        <translation>Fermer</translation>
    </message>
    <message id="snapshot.emptyTitle">
        <translation>Aucun instantané</translation>
    </message>
    <message id="snapshot.emptyMessage">
        <translation>Le premier est pris automatiquement avant une suppression, un remplacement ou un import.</translation>
    </message>
    <message id="snapshot.previewTitle">
        <translation>Instantané</translation>
    </message>
    <message id="snapshot.oneComesBack">
        <translation>1 élément revient</translation>
    </message>
    <message id="snapshot.comeBack %lld">
        <translation>%lld éléments reviennent</translation>
    </message>
    <message id="snapshot.oneGoes">
        <translation>1 élément qui n’y figure pas disparaît</translation>
    </message>
    <message id="snapshot.go %lld">
        <translation>%lld éléments qui n’y figurent pas disparaissent</translation>
    </message>
    <message id="snapshot.oneChanges">
        <translation>1 élément redevient ce qu’il était</translation>
    </message>
    <message id="snapshot.change %lld">
        <translation>%lld éléments redeviennent ce qu’ils étaient</translation>
    </message>
    <message id="snapshot.oneMoves">
        <translation>1 élément reprend sa place</translation>
    </message>
    <message id="snapshot.move %lld">
        <translation>%lld éléments reprennent leur place</translation>
    </message>
    <message id="snapshot.reorders">
        <translation>l’ordre redevient ce qu’il était</translation>
    </message>
    <message id="snapshot.fate.comesBack">
        <translation>revient</translation>
    </message>
    <message id="snapshot.fate.changes">
        <translation>comme avant</translation>
    </message>
    <message id="snapshot.fate.moves">
        <translation>change de place</translation>
    </message>
    <message id="snapshot.unreadableTitle">
        <translation>Cet instantané est illisible</translation>
    </message>
    <message id="snapshot.refusedTitle">
        <translation>L’instantané n’a pas été restauré</translation>
    </message>
    <message id="about.licence">
        <translation>Licences</translation>
    </message>
    <message id="about.readLicence">
        <translation>Lire</translation>
    </message>
    <message id="about.licenceOf %@">
        <translation>Licence de %@</translation>
    </message>
    <message id="welcome.begin">
        <translation>Pour bien commencer</translation>
    </message>
    <message id="welcome.addSample">
        <translation>Ajouter un groupe d’exemple</translation>
    </message>
    <message id="welcome.sampleAdded">
        <translation>Groupe d’exemple ajouté</translation>
    </message>
    <message id="welcome.importBookmarks">
        <translation>Importer des favoris…</translation>
    </message>
    <message id="welcome.sampleGroup">
        <translation>Premiers pas</translation>
    </message>
    <message id="welcome.sampleHome">
        <translation>Dossier personnel</translation>
    </message>
    <message id="welcome.sampleDocuments">
        <translation>Documents</translation>
    </message>
    <message id="welcome.sampleNote">
        <translation>Comment ça marche</translation>
    </message>
    <message id="foreign.unnamedFolder">
        <translation>Dossier sans nom</translation>
    </message>
    <message id="foreign.errorNotAFolder">
        <translation>Ce dossier n’existe pas.</translation>
    </message>
    <message id="foreign.errorNotBookmarks">
        <translation>Ce fichier n’est pas un fichier de signets d’un navigateur.</translation>
    </message>
    <message id="foreign.errorNoLinks">
        <translation>Aucun lien n’a été trouvé.</translation>
    </message>
    <message id="foreign.errorTooLarge">
        <translation>Le fichier est trop volumineux. La limite est de 64 Mo.</translation>
    </message>
    <message id="foreign.errorTooManyItems">
        <translation>Il y a trop de liens. La limite est de 200 000.</translation>
    </message>
    <message id="foreign.errorTooDeep">
        <translation>Le fichier comporte trop de niveaux imbriqués.</translation>
    </message>
    <message id="foreign.errorCancelled">
        <translation>L’importation a été annulée. Rien n’a changé.</translation>
    </message>
    <message id="error.importCancelled">
        <translation>L’importation a été annulée ; rien n’a changé.</translation>
    </message>
    <message id="error.importNotStored">
        <translation>Les liens n’ont pas pu être enregistrés ; rien n’a été importé.</translation>
    </message>
    <message id="settings.addFile">
        <translation>Ajouter des fichiers…</translation>
    </message>
    <message id="settings.addFolder">
        <translation>Ajouter un dossier…</translation>
    </message>
    <message id="settings.addGroup">
        <translation>Nouveau groupe</translation>
    </message>
    <message id="settings.newGroupName">
        <translation>Nouveau groupe</translation>
    </message>
    <message id="settings.indent">
        <translation>Placer dans le groupe précédent</translation>
    </message>
    <message id="settings.outdent">
        <translation>Sortir du groupe</translation>
    </message>
    <message id="settings.move">
        <translation>Déplacer</translation>
    </message>
    <message id="settings.moveTo">
        <translation>Déplacer vers un groupe</translation>
    </message>
    <message id="settings.topLevel">
        <translation>Premier niveau</translation>
    </message>
    <message id="settings.color">
        <translation>Couleur</translation>
    </message>
    <message id="settings.defaultColor">
        <translation>Couleur par défaut</translation>
    </message>
    <message id="settings.icon">
        <translation>Icône</translation>
    </message>
    <message id="settings.defaultIcon">
        <translation>Par défaut</translation>
    </message>
    <message id="settings.iconSearch">
        <translation>Chercher une icône</translation>
    </message>
    <message id="settings.iconNone">
        <translation>Aucune icône de ce nom</translation>
    </message>
    <message id="settings.various">
        <translation>Diverses</translation>
    </message>
    <message id="settings.coloredInMenu">
        <translation>En couleur dans le menu</translation>
    </message>
    <message id="edit.sortAlphabetically">
        <translation>Trier par ordre alphabétique</translation>
    </message>
    <message id="settings.editNote">
        <translation>Modifier la note</translation>
    </message>
    <message id="settings.address">
        <translation>Adresse</translation>
    </message>
    <message id="settings.path">
        <translation>Chemin</translation>
    </message>
    <message id="settings.choose">
        <translation>Choisir…</translation>
    </message>
    <message id="settings.chooseFile">
        <translation>Choisir un fichier</translation>
    </message>
    <message id="settings.chooseFolder">
        <translation>Choisir un dossier</translation>
    </message>
    <message id="settings.badPath">
        <translation>Un chemin commence par « / » ou « ~ ». La touche Échap rétablit l’ancien.</translation>
    </message>
    <message id="settings.badAddress">
        <translation>Cette adresse ne peut pas être ouverte. Il en faut une comme https://example.org. La touche Échap rétablit l’ancienne.</translation>
    </message>
    <message id="settings.itemGone">
        <translation>Cet élément a été supprimé ailleurs. Votre saisie reste ici jusqu’à ce que vous en sélectionniez un autre.</translation>
    </message>
    <message id="settings.broken">
        <translation>Introuvable</translation>
    </message>
    <message id="settings.nothingSelected">
        <translation>Sélectionnez un élément de la liste pour le modifier ici.</translation>
    </message>
    <message id="settings.editor">
        <translation>La sélection</translation>
    </message>
    <message id="settings.selected %lld">
        <translation>%lld éléments sélectionnés</translation>
    </message>
    <message id="settings.memberCount %lld">
        <translation>Éléments à l’intérieur : %lld</translation>
    </message>
    <message id="settings.removedSeveral %lld">
        <translation>%lld éléments ont été supprimés.</translation>
    </message>
    <message id="settings.search">
        <translation>Chercher un nom ou une adresse</translation>
    </message>
    <message id="settings.noMatch.title">
        <translation>Aucun résultat</translation>
    </message>
    <message id="settings.noMatch.message">
        <translation>Aucun nom ni aucune adresse ne contient tous ces mots.</translation>
    </message>
    <message id="settings.noMatch.clear">
        <translation>Effacer la recherche</translation>
    </message>
    <message id="settings.dropNothing">
        <translation>Rien de cela ne peut être ajouté. Déposez des fichiers, des dossiers ou des adresses web.</translation>
    </message>
    <message id="settings.refused.tooDeep">
        <translation>Ce groupe est au troisième niveau, le dernier : rien ne peut y être déplacé.</translation>
    </message>
    <message id="settings.refused.intoItself">
        <translation>Un groupe ne peut pas être déplacé dans lui-même.</translation>
    </message>
    <message id="settings.refused.notFound">
        <translation>Cet élément n’est plus dans la liste.</translation>
    </message>
    <message id="settings.refused.notStored">
        <translation>Rien n’a été modifié : la copie qui permet de revenir en arrière n’a pas pu être gardée.</translation>
    </message>
    <message id="settings.siteIcons">
        <translation>Afficher les icônes des sites web</translation>
    </message>
    <message id="settings.siteIconsHint %@">
        <translation>Pour les obtenir, le nom de domaine de chaque lien web (comme example.org) est envoyé à %@. Les adresses de votre réseau local ne sont jamais envoyées.</translation>
    </message>
    <message id="note.format">
        <translation>Mise en forme</translation>
    </message>
    <message id="note.bold">
        <translation>Gras</translation>
    </message>
    <message id="note.italic">
        <translation>Italique</translation>
    </message>
    <message id="note.underline">
        <translation>Souligné</translation>
    </message>
    <message id="note.strike">
        <translation>Barré</translation>
    </message>
    <message id="note.size">
        <translation>Taille du texte</translation>
    </message>
    <message id="note.size.small">
        <translation>Petite</translation>
    </message>
    <message id="note.size.normal">
        <translation>Normale</translation>
    </message>
    <message id="note.size.large">
        <translation>Grande</translation>
    </message>
    <message id="note.size.larger">
        <translation>Plus grande</translation>
    </message>
    <message id="note.size.huge">
        <translation>Très grande</translation>
    </message>
    <message id="note.bullets">
        <translation>Liste à puces</translation>
    </message>
    <message id="note.numbers">
        <translation>Liste numérotée</translation>
    </message>
    <message id="note.checks">
        <translation>Liste à cocher</translation>
    </message>
    <message id="note.link">
        <translation>Lien</translation>
    </message>
    <message id="note.undo">
        <translation>Annuler</translation>
    </message>
    <message id="note.redo">
        <translation>Rétablir</translation>
    </message>
    <message id="note.link.address">
        <translation>Adresse du lien</translation>
    </message>
    <message id="note.link.placeholder">
        <translation>Adresse web ou e-mail</translation>
    </message>
    <message id="note.link.apply">
        <translation>Appliquer le lien</translation>
    </message>
    <message id="note.link.open">
        <translation>Ouvrir le lien</translation>
    </message>
    <message id="note.link.edit">
        <translation>Modifier le lien…</translation>
    </message>
    <message id="note.link.remove">
        <translation>Supprimer le lien</translation>
    </message>
    <message id="note.link.close">
        <translation>Fermer</translation>
    </message>
    <message id="note.link.unsafe">
        <translation>Une note ne peut pas contenir de lien vers cette adresse.</translation>
    </message>
    <message id="note.link.openHint">
        <translation>Ctrl+clic pour ouvrir</translation>
    </message>
    <message id="note.linkRefused">
        <translation>Impossible d’ouvrir ce lien.</translation>
    </message>
    <message id="note.pastePlain">
        <translation>Coller sans mise en forme</translation>
    </message>
    <message id="note.pasteRefused">
        <translation>Aucun texte à coller, ou texte trop long.</translation>
    </message>
    <message id="note.incomplete">
        <translation>Cette note comporte des éléments qui ne peuvent pas être affichés ici. Ils sont conservés tant que vous ne modifiez pas son texte.</translation>
    </message>
    <message id="widget.mode">
        <translation>Dans le menu :</translation>
    </message>
    <message id="snapshot.changesTitle">
        <translation>Si vous le restaurez :</translation>
    </message>
    <message id="snapshot.noChange">
        <translation>rien ne change : vos liens sont identiques</translation>
    </message>
    <message id="snapshot.unreadable %@">
        <translation>Vos liens n’ont pas changé. Cause : %@</translation>
    </message>
    <message id="snapshot.refused">
        <translation>L’état actuel de vos liens n’a pas pu être conservé au préalable ; rien n’a donc été changé. Le disque est-il plein ?</translation>
    </message>
    <message id="about.licenceText">
        <translation>Orvelle est un logiciel libre et repose sur le travail d’autrui. Merci !</translation>
    </message>
    <message id="about.licenceUnreadable %@">
        <translation>Le texte est illisible : %@</translation>
    </message>
    <message id="welcome.sampleNoteText">
        <translation>Cliquez sur l’icône de la zone de notification : vos liens sont dans le menu.
Les boutons du bas ajoutent un lien, créent une note comme celle-ci et ouvrent les réglages.
Vous pouvez tout modifier ou supprimer ici.</translation>
    </message>
    <message id="snapshot.preview">
        <translation>Aperç&amp;u…</translation>
    </message>
    <message id="systemInfo.cpu">
        <translation>CPU</translation>
    </message>
    <message id="systemInfo.memory">
        <translation>RAM</translation>
    </message>
    <message id="systemInfo.disk">
        <translation>Disque</translation>
    </message>
    <message id="systemInfo.free %@">
        <translation>%@ libres</translation>
    </message>
    <message id="network.download %@">
        <translation>réception %@</translation>
    </message>
    <message id="network.upload %@">
        <translation>envoi %@</translation>
    </message>
    <message id="timer.startFor %@">
        <translation>Lancer un minuteur de %@</translation>
    </message>
    <message id="timer.customButton">
        <translation>Autre durée…</translation>
    </message>
    <message id="timer.stop">
        <translation>Arrêter le minuteur</translation>
    </message>
    <message id="timer.customTitle">
        <translation>Nouveau minuteur</translation>
    </message>
    <message id="timer.unitHours">
        <translation>heures</translation>
    </message>
    <message id="timer.unitMinutes">
        <translation>minutes</translation>
    </message>
    <message id="timer.startButton">
        <translation>Démarrer</translation>
    </message>
    <message id="timer.cancel">
        <translation>Annuler</translation>
    </message>
    <message id="timer.customSubtitle">
        <translation>Pour combien de temps ?</translation>
    </message>
    <message id="timer.toolTip %@">
        <translation>Orvelle : minuteur, encore %@</translation>
    </message>
    <message id="snapshot.column.reason">
        <translation>Pris avant</translation>
    </message>
    <message id="snapshot.takenBefore %@">
        <translation>Pris avant : %@</translation>
    </message>
    <message id="quickAdd.offer %@">
        <translation>Dans le presse-papiers : %@</translation>
    </message>
    <message id="quickAdd.offerKey">
        <translation>Entrée</translation>
    </message>
    <message id="quickAdd.sameAddress %@">
        <translation>Déjà dans vos liens : %@. Vous pouvez tout de même l’ajouter.</translation>
    </message>
    <message id="quickAdd.missingFile">
        <translation>Il n’y a rien à cet emplacement. Le lien sera signalé comme rompu.</translation>
    </message>
    <message id="quickAdd.dropHint">
        <translation>Déposez ici un fichier, un dossier ou une adresse</translation>
    </message>
    <message id="import.settingsTaken">
        <translation>Des réglages ont été repris.</translation>
    </message>
    <message id="systemInfo.modeTerminal">
        <translation>Terminal</translation>
    </message>
    <message id="systemInfo.modeDiscreet">
        <translation>Discret</translation>
    </message>
    <message id="network.modeGraph">
        <translation>Graphique</translation>
    </message>
    <message id="network.modeDiscreet">
        <translation>Discret</translation>
    </message>
    <message id="timer.presetsLabel">
        <translation>Durées :</translation>
    </message>
    <message id="timer.customMessage">
        <translation>Démarrer :</translation>
    </message>
    <message id="timer.customPlaceholder">
        <translation>minutes</translation>
    </message>
    <message id="timer.startCustom">
        <translation>Démarrer</translation>
    </message>
    <message id="timer.minutesSuffix">
        <translation> min</translation>
    </message>
    <message id="snapshot.restored %@">
        <translation>Instantané restauré : %@</translation>
    </message>
    <message id="error.importUndecodable %@">
        <translation>Orvelle ne peut pas lire ce document (%@).</translation>
    </message>
    <message id="error.importTooLarge">
        <translation>Le document dépasse 64 Mio.</translation>
    </message>
    <message id="error.importTooManyItems">
        <translation>Le document contient plus de 200 000 liens.</translation>
    </message>
    <message id="error.importTooDeep">
        <translation>Le document est imbriqué sur plus de 512 niveaux.</translation>
    </message>
    <message id="import.checksumError">
        <translation>La somme de contrôle du document est fausse : il a été endommagé ou modifié à la main.</translation>
    </message>
    <message id="import.howTo">
        <translation>Comment reprendre son contenu ?</translation>
    </message>
    <message id="import.modeDescription">
        <translation>Une copie des liens actuels est d’abord conservée, et l’importation peut être annulée.</translation>
    </message>
    <message id="import.mergeDesc">
        <translation>Ajoute à la fin des liens ce qui n’y est pas encore.</translation>
    </message>
    <message id="import.replaceAllDesc">
        <translation>Les liens du fichier prennent la place de tous les liens actuels.</translation>
    </message>
    <message id="import.itemsInFile %lld">
        <translation>Éléments : %lld</translation>
    </message>
    <message id="import.writtenOn %@">
        <translation>Enregistré : %@</translation>
    </message>
    <message id="import.writtenBy %@">
        <translation>Sur : %@</translation>
    </message>
    <message id="import.versionWarning">
        <translation>Ce document provient d’une version plus récente d’Orvelle. Ce que cette version ne connaît pas est laissé de côté.</translation>
    </message>
    <message id="import.confirm">
        <translation>Importer</translation>
    </message>
    <message id="import.bookmarksTitle">
        <translation>Importer des signets</translation>
    </message>
    <message id="import.linkFolderTitle">
        <translation>Importer un dossier de fichiers de lien</translation>
    </message>
    <message id="import.linkFiles">
        <translation>Liens</translation>
    </message>
    <message id="import.working">
        <translation>Importation…</translation>
    </message>
    <message id="import.finished">
        <translation>Importation terminée</translation>
    </message>
    <message id="import.nothingNew">
        <translation>Il n’y avait rien de nouveau à importer</translation>
    </message>
    <message id="import.undo">
        <translation>Annuler l’importation</translation>
    </message>
    <message id="import.undoRefused">
        <translation>Les liens ont changé depuis l’importation. L’état précédent figure parmi les copies conservées, dans les réglages.</translation>
    </message>
    <message id="import.imported">
        <translation>Éléments importés :</translation>
    </message>
    <message id="import.added">
        <translation>Éléments ajoutés :</translation>
    </message>
    <message id="import.duplicatesDetected">
        <translation>Déjà présents, non ajoutés :</translation>
    </message>
    <message id="import.dropped">
        <translation>Incomplets ou trop imbriqués, écartés :</translation>
    </message>
    <message id="import.quickLaunchImported">
        <translation>Les apps de lancement rapide ont été reprises.</translation>
    </message>
    <message id="import.foldedFolders">
        <translation>Dossiers fondus dans leur parent :</translation>
    </message>
    <message id="import.leftOutAddresses">
        <translation>Adresses écartées (dangereuses ou internes) :</translation>
    </message>
    <message id="import.unreadableFiles">
        <translation>Fichiers et dossiers illisibles :</translation>
    </message>
    <message id="import.otherFiles">
        <translation>Autres fichiers, non importés :</translation>
    </message>
    <message id="export.title">
        <translation>Exporter</translation>
    </message>
    <message id="export.bookmarksTitle">
        <translation>Exporter des signets</translation>
    </message>
    <message id="export.working">
        <translation>Exportation…</translation>
    </message>
    <message id="export.finished %@">
        <translation>« %@ » a été enregistré</translation>
    </message>
    <message id="export.items">
        <translation>Éléments exportés :</translation>
    </message>
    <message id="export.notesLeftOut">
        <translation>Notes écartées :</translation>
    </message>
    <message id="error.export %@">
        <translation>Le fichier n’a pas pu être enregistré : %@</translation>
    </message>
    <message id="exchange.documents">
        <translation>Documents Orvelle</translation>
    </message>
    <message id="exchange.bookmarkFiles">
        <translation>Fichiers de signets</translation>
    </message>
    <message id="exchange.allFiles">
        <translation>Tous les fichiers</translation>
    </message>
    <message id="settings.reveal">
        <translation>Montrer l’emplacement</translation>
    </message>
    <message id="shortcut.enabled">
        <translation>Ouvrir le menu de partout avec</translation>
    </message>
    <message id="shortcut.recording">
        <translation>Tapez une combinaison…</translation>
    </message>
    <message id="shortcut.recordHint">
        <translation>Cliquez, puis tapez la nouvelle combinaison ; Échap garde l’actuelle</translation>
    </message>
    <message id="shortcut.accessible %@">
        <translation>Raccourci : %@</translation>
    </message>
    <message id="shortcut.reset %@">
        <translation>Revenir à %@</translation>
    </message>
    <message id="shortcut.conflictWarning">
        <translation>Beaucoup de programmes utilisent cette combinaison ; elle ne leur parviendra plus.</translation>
    </message>
    <message id="shortcut.heldByAnother">
        <translation>Un autre programme utilise déjà cette combinaison. Choisissez-en une autre.</translation>
    </message>
    <message id="shortcut.noSuchKey">
        <translation>Ce clavier n’a pas cette touche. Choisissez une autre combinaison.</translation>
    </message>
    <message id="shortcut.unavailable">
        <translation>Sur ce bureau, les programmes ne peuvent pas poser de raccourci. Associez la commande « orvelle toggle » dans les réglages du clavier.</translation>
    </message>
    <message id="shortcut.refused">
        <translation>La combinaison enregistrée est inutilisable. Choisissez-en une autre.</translation>
    </message>
    <message id="quicklaunch.style">
        <translation>Style :</translation>
    </message>
    <message id="quicklaunch.style.souffle">
        <translation>Souffle</translation>
    </message>
    <message id="quicklaunch.style.dock">
        <translation>Dock</translation>
    </message>
    <message id="quicklaunch.style.neon">
        <translation>Néon</translation>
    </message>
    <message id="quicklaunch.style.encre">
        <translation>Encre</translation>
    </message>
    <message id="quicklaunch.empty">
        <translation>Vide</translation>
    </message>
    <message id="quicklaunch.remove">
        <translation>Retirer</translation>
    </message>
    <message id="quicklaunch.choose">
        <translation>Choisir…</translation>
    </message>
    <message id="quicklaunch.noApps">
        <translation>Aucune application choisie</translation>
    </message>
    <message id="quicklaunch.gone">
        <translation>Cette application n’est plus installée.</translation>
    </message>
    <message id="quicklaunch.slots">
        <translation>Applications</translation>
    </message>
    <message id="quicklaunch.slotsHint">
        <translation>Glissez pour réordonner. Le menu montre jusqu’à quatre applications.</translation>
    </message>
    <message id="quicklaunch.chooserTitle">
        <translation>Choisir une application</translation>
    </message>
    <message id="quicklaunch.search">
        <translation>Rechercher une application</translation>
    </message>
    <message id="quicklaunch.fromFile">
        <translation>Depuis un fichier…</translation>
    </message>
    <message id="quicklaunch.fileFilter">
        <translation>Fichiers d’application (*.desktop)</translation>
    </message>
    <message id="quicklaunch.notUsable %@">
        <translation>« %@ » n’est pas une application que l’on peut lancer. Hors des dossiers d’applications, le fichier doit être marqué comme exécutable.</translation>
    </message>
    <message id="clipboard.empty">
        <translation>Rien de copié</translation>
    </message>
    <message id="clipboard.typeRTF">
        <translation>Texte mis en forme</translation>
    </message>
    <message id="clipboard.typeImage">
        <translation>Image</translation>
    </message>
    <message id="clipboard.typeFile">
        <translation>Fichier</translation>
    </message>
    <message id="clipboard.typeFiles ">
        <translation>Fichiers : </translation>
    </message>
    <message id="clipboard.typeOther">
        <translation>Autre contenu</translation>
    </message>
    <message id="clipboard.pause">
        <translation>Suspendre</translation>
    </message>
    <message id="clipboard.resume">
        <translation>Reprendre</translation>
    </message>
    <message id="clipboard.paused">
        <translation>En pause</translation>
    </message>
    <message id="clipboard.clear">
        <translation>Effacer l’historique</translation>
    </message>
    <message id="clipboard.forget">
        <translation>Oublier cet élément</translation>
    </message>
    <message id="clipboard.plainText">
        <translation>Coller sans mise en forme</translation>
    </message>
    <message id="clipboard.plainTextHint">
        <translation>Avec Maj, sans mise en forme</translation>
    </message>
    <message id="weather.style">
        <translation>Style :</translation>
    </message>
    <message id="weather.style.aurora">
        <translation>Aurore</translation>
    </message>
    <message id="weather.style.brume">
        <translation>Brume</translation>
    </message>
    <message id="weather.style.horizon">
        <translation>Horizon</translation>
    </message>
    <message id="weather.style.cristal">
        <translation>Cristal</translation>
    </message>
    <message id="weather.style.zephyr">
        <translation>Zéphyr</translation>
    </message>
    <message id="weather.condition.clear">
        <translation>Dégagé</translation>
    </message>
    <message id="weather.condition.mainlyClear">
        <translation>Plutôt dégagé</translation>
    </message>
    <message id="weather.condition.partlyCloudy">
        <translation>Éclaircies</translation>
    </message>
    <message id="weather.condition.overcast">
        <translation>Couvert</translation>
    </message>
    <message id="weather.condition.fog">
        <translation>Brouillard</translation>
    </message>
    <message id="weather.condition.drizzle">
        <translation>Bruine</translation>
    </message>
    <message id="weather.condition.freezingDrizzle">
        <translation>Bruine verglaçante</translation>
    </message>
    <message id="weather.condition.rain">
        <translation>Pluie</translation>
    </message>
    <message id="weather.condition.freezingRain">
        <translation>Pluie verglaçante</translation>
    </message>
    <message id="weather.condition.snow">
        <translation>Neige</translation>
    </message>
    <message id="weather.condition.showers">
        <translation>Averses</translation>
    </message>
    <message id="weather.condition.snowShowers">
        <translation>Averses de neige</translation>
    </message>
    <message id="weather.condition.thunderstorm">
        <translation>Orage</translation>
    </message>
    <message id="weather.condition.cloudy">
        <translation>Nuageux</translation>
    </message>
    <message id="calendar.tomorrow">
        <translation>Demain</translation>
    </message>
    <message id="calendar.allDay">
        <translation>toute la journée</translation>
    </message>
    <message id="weather.modeAutomatic">
        <translation>Ma position</translation>
    </message>
    <message id="weather.modeManual">
        <translation>Ville</translation>
    </message>
    <message id="weather.cityLabel">
        <translation>Ville :</translation>
    </message>
    <message id="weather.cityPlaceholder">
        <translation>Ville, ou ville et pays</translation>
    </message>
    <message id="weather.search">
        <translation>Chercher</translation>
    </message>
    <message id="weather.searching">
        <translation>Recherche…</translation>
    </message>
    <message id="weather.cityFound %@">
        <translation>Trouvé : %@</translation>
    </message>
    <message id="weather.cityNotFound">
        <translation>Aucune ville de ce nom.</translation>
    </message>
    <message id="weather.cityFailed">
        <translation>Le service de recherche n’a pas répondu.</translation>
    </message>
    <message id="weather.locationPending">
        <translation>Météo en attente…</translation>
    </message>
    <message id="weather.locationDenied">
        <translation>Position indisponible</translation>
    </message>
    <message id="weather.noCity">
        <translation>Choisissez une ville dans les réglages</translation>
    </message>
    <message id="weather.unavailable">
        <translation>Météo indisponible</translation>
    </message>
    <message id="weather.minutesAgo %lld">
        <translation>il y a %lld min</translation>
    </message>
    <message id="weather.hoursAgo %lld">
        <translation>il y a %lld h</translation>
    </message>
    <message id="weather.daysAgo %lld">
        <translation>il y a %lld j</translation>
    </message>
    <message id="calendar.noEvent">
        <translation>Aucun événement à venir</translation>
    </message>
    <message id="calendar.accessRequired">
        <translation>Aucun calendrier à lire</translation>
    </message>
    <message id="calendar.join">
        <translation>Rejoindre</translation>
    </message>
    <message id="calendar.joinEvent %@">
        <translation>Rejoindre « %@ »</translation>
    </message>
    <message id="calendar.declined">
        <translation>Refusé</translation>
    </message>
    <message id="calendar.iconColor">
        <translation>Couleur de l’icône :</translation>
    </message>
    <message id="calendar.maxEvents">
        <translation>Événements affichés :</translation>
    </message>
    <message id="calendar.scope">
        <translation>Quels événements :</translation>
    </message>
    <message id="calendar.scope.today">
        <translation>Aujourd’hui</translation>
    </message>
    <message id="calendar.scope.day">
        <translation>Le prochain jour occupé</translation>
    </message>
    <message id="calendar.scope.all">
        <translation>Les sept prochains jours</translation>
    </message>
    <message id="calendar.hideDeclined">
        <translation>Masquer les invitations refusées</translation>
    </message>
    <message id="calendar.folders">
        <translation>Dossiers d’agendas :</translation>
    </message>
    <message id="calendar.addFolder">
        <translation>Ajouter…</translation>
    </message>
    <message id="calendar.removeFolder">
        <translation>Retirer</translation>
    </message>
    <message id="calendar.chooseFolder">
        <translation>Choisissez un dossier qui contient des fichiers .ics.</translation>
    </message>
    <message id="widget.iconColor">
        <translation>Couleur de l’icône :</translation>
    </message>
    <message id="clipboard.privacyHint">
        <translation>Les dix derniers éléments sont gardés jusqu’à la fermeture d’Orvelle. Ce qu’un gestionnaire de mots de passe marque comme secret n’est jamais lu.</translation>
    </message>
    <message id="cloudSync.refused.noFolder">
        <translation>Choisissez d’abord un dossier.</translation>
    </message>
    <message id="cloudSync.refused.notAFolder">
        <translation>Ce dossier n’existe pas pour l’instant. Le disque ou le partage est-il connecté ?</translation>
    </message>
    <message id="cloudSync.refused.noServer">
        <translation>Ce n’est pas l’adresse d’un serveur. Elle ressemble à https://cloud.example.org/remote.php/dav/files/ada/.</translation>
    </message>
    <message id="cloudSync.refused.insecure">
        <translation>Orvelle n’envoie ni vos liens ni votre mot de passe sans chiffrement. Utilisez une adresse qui commence par https://.</translation>
    </message>
    <message id="cloudSync.refused.secretInAddress">
        <translation>N’écrivez ni le nom ni le mot de passe dans l’adresse ; ils ont leurs propres champs.</translation>
    </message>
    <message id="cloudSync.refused.noUser">
        <translation>Saisissez le nom que vous utilisez sur ce serveur.</translation>
    </message>
    <message id="sync.summary.updates %lld">
        <translation>Éléments mis à jour : %lld</translation>
    </message>
    <message id="sync.summary.adds %lld">
        <translation>Nouveaux éléments : %lld</translation>
    </message>
    <message id="sync.summary.removes %lld">
        <translation>Éléments à supprimer : %lld</translation>
    </message>
    <message id="sync.summary.duplicates %lld">
        <translation>Groupes de doublons : %lld</translation>
    </message>
    <message id="sync.summary.noChanges">
        <translation>Rien ne changerait : les deux côtés contiennent la même chose.</translation>
    </message>
    <message id="sync.confirmTitle">
        <translation>Synchroniser avec ce document ?</translation>
    </message>
    <message id="sync.apply">
        <translation>Synchroniser</translation>
    </message>
    <message id="sync.showChanges">
        <translation>Afficher les changements…</translation>
    </message>
    <message id="sync.complete">
        <translation>Synchronisation terminée</translation>
    </message>
    <message id="sync.result.updated %lld">
        <translation>Mis à jour : %lld</translation>
    </message>
    <message id="sync.result.added %lld">
        <translation>Ajoutés : %lld</translation>
    </message>
    <message id="sync.result.removed %lld">
        <translation>Supprimés : %lld</translation>
    </message>
    <message id="sync.result.duplicates %lld">
        <translation>Doublons résolus : %lld</translation>
    </message>
    <message id="sync.result.noChanges">
        <translation>Rien n’a changé.</translation>
    </message>
    <message id="sync.result.duplicatesResolved">
        <translation>Doublons résolus :</translation>
    </message>
    <message id="sync.removed %lld">
        <translation>Supprimés : %lld</translation>
    </message>
    <message id="sync.preview.title">
        <translation>Ce qui changerait</translation>
    </message>
    <message id="sync.preview.updated">
        <translation>Mis à jour</translation>
    </message>
    <message id="sync.preview.added">
        <translation>Nouveaux</translation>
    </message>
    <message id="sync.preview.removed">
        <translation>Supprimés</translation>
    </message>
    <message id="sync.preview.duplicates">
        <translation>Doublons</translation>
    </message>
    <message id="sync.preview.duplicatesDetail">
        <translation>Ces éléments ont été trouvés plusieurs fois. De chacun, la copie cochée est conservée.</translation>
    </message>
    <message id="sync.preview.duplicateInstances">
        <translation>Copies :</translation>
    </message>
    <message id="sync.preview.kept">
        <translation>Conservée</translation>
    </message>
    <message id="sync.preview.dropped">
        <translation>Retirée</translation>
    </message>
    <message id="sync.preview.noChangesDetail">
        <translation>Les liens d’ici et ceux du document sont les mêmes.</translation>
    </message>
    <message id="sync.preview.apply">
        <translation>Appliquer</translation>
    </message>
    <message id="sync.details.pathChanged">
        <translation>Adresse</translation>
    </message>
    <message id="sync.details.colorChanged">
        <translation>Couleur</translation>
    </message>
    <message id="sync.details.iconChanged">
        <translation>Icône</translation>
    </message>
    <message id="sync.details.otherChanged">
        <translation>Nom ou contenu</translation>
    </message>
    <message id="sync.details.newerHere">
        <translation>plus récent ici</translation>
    </message>
    <message id="cloudSync.heldBack.keep">
        <translation>Garder ce qui est ici</translation>
    </message>
    <message id="cloudSync.heldBack.accept">
        <translation>Accepter</translation>
    </message>
    <message id="update.title">
        <translation>Mises à jour</translation>
    </message>
    <message id="update.autoCheck">
        <translation>Rechercher les mises à jour une fois par jour</translation>
    </message>
    <message id="update.checkNow">
        <translation>Vérifier</translation>
    </message>
    <message id="update.checking">
        <translation>Recherche d’une nouvelle version…</translation>
    </message>
    <message id="update.state.available %@">
        <translation>La version %@ est disponible.</translation>
    </message>
    <message id="update.state.never">
        <translation>Pas encore vérifié.</translation>
    </message>
    <message id="update.state.noHost">
        <translation>Cette copie d’Orvelle n’a pas de serveur à interroger. Elle est mise à jour par qui l’a fournie.</translation>
    </message>
    <message id="update.sent %@">
        <translation>Le numéro de la dernière version est demandé à %@. Rien d’autre n’est envoyé, et rien n’est installé.</translation>
    </message>
    <message id="update.available.title">
        <translation>Une nouvelle version est disponible</translation>
    </message>
    <message id="update.available.message %@">
        <translation>Orvelle %@ peut être téléchargé depuis sa page.</translation>
    </message>
    <message id="update.download">
        <translation>Ouvrir la page</translation>
    </message>
    <message id="update.later">
        <translation>Plus tard</translation>
    </message>
    <message id="update.skip">
        <translation>Ignorer cette version</translation>
    </message>
    <message id="update.upToDate.title">
        <translation>Orvelle est à jour</translation>
    </message>
    <message id="update.upToDate.message %@">
        <translation>La version %@ est la plus récente.</translation>
    </message>
    <message id="update.error.title">
        <translation>La recherche de mises à jour a échoué</translation>
    </message>
    <message id="update.error.timedOut">
        <translation>Le serveur n’a pas répondu à temps.</translation>
    </message>
    <message id="update.error.network">
        <translation>Le serveur n’a pas pu être joint.</translation>
    </message>
    <message id="update.error.status %@">
        <translation>Le serveur a répondu par l’erreur %@.</translation>
    </message>
    <message id="update.error.manifest">
        <translation>La réponse du serveur ne décrit pas une version.</translation>
    </message>
    <message id="update.error.noHost">
        <translation>Il n’y a pas de serveur à interroger.</translation>
    </message>
    <message id="tip.buy">
        <translation>Laisser un pourboire</translation>
    </message>
    <message id="tip.later">
        <translation>Pas maintenant</translation>
    </message>
    <message id="tip.neverAgain">
        <translation>Ne plus demander</translation>
    </message>
    <message id="settings.launchAtLogin">
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message id="welcome.privacy">
        <translation>Votre vie privée</translation>
    </message>
    <message id="welcome.privacyNothingElse">
        <translation>Rien d’autre ne quitte cet ordinateur sans que vous l’ayez activé.</translation>
    </message>
    <message id="import.syncDesc">
        <translation>Montre ce qui diffère et reprend ce que vous choisissez, par défaut le côté le plus récent.</translation>
    </message>
    <message id="cloudSync.sectionTitle">
        <translation>Synchronisation</translation>
    </message>
    <message id="cloudSync.sectionSubtitle">
        <translation>Garde vos liens et réglages identiques sur tous vos ordinateurs, par un dossier ou un serveur de votre choix. Rien n’est envoyé ailleurs.</translation>
    </message>
    <message id="cloudSync.autoSync">
        <translation>Synchroniser automatiquement</translation>
    </message>
    <message id="cloudSync.syncNow">
        <translation>Synchroniser</translation>
    </message>
    <message id="cloudSync.load">
        <translation>Charger…</translation>
    </message>
    <message id="cloudSync.configure">
        <translation>Configurer</translation>
    </message>
    <message id="cloudSync.stop">
        <translation>Ne plus synchroniser</translation>
    </message>
    <message id="cloudSync.test">
        <translation>Tester</translation>
    </message>
    <message id="cloudSync.testGood">
        <translation>Cet emplacement fonctionne : lecture et écriture possibles.</translation>
    </message>
    <message id="cloudSync.place">
        <translation>Emplacement :</translation>
    </message>
    <message id="cloudSync.place.none">
        <translation>Aucun</translation>
    </message>
    <message id="cloudSync.place.folder">
        <translation>Dossier synchronisé par un autre programme</translation>
    </message>
    <message id="cloudSync.place.webdav">
        <translation>Serveur WebDAV</translation>
    </message>
    <message id="cloudSync.folder">
        <translation>Dossier :</translation>
    </message>
    <message id="cloudSync.folderHint">
        <translation>Un dossier de votre cloud ou d’un partage</translation>
    </message>
    <message id="cloudSync.chooseFolder">
        <translation>Choisir…</translation>
    </message>
    <message id="cloudSync.chooseFolderTitle">
        <translation>Dossier à partager entre vos ordinateurs</translation>
    </message>
    <message id="cloudSync.chooseFolderConfirm">
        <translation>Choisir</translation>
    </message>
    <message id="cloudSync.server">
        <translation>Adresse :</translation>
    </message>
    <message id="cloudSync.user">
        <translation>Nom d’utilisateur :</translation>
    </message>
    <message id="cloudSync.password">
        <translation>Mot de passe :</translation>
    </message>
    <message id="cloudSync.passwordKept">
        <translation>Conservé dans votre trousseau</translation>
    </message>
    <message id="cloudSync.icloudUnavailable">
        <translation>L’emplacement est inaccessible.</translation>
    </message>
    <message id="cloudSync.state.noPlace">
        <translation>Choisissez un emplacement accessible à tous vos ordinateurs.</translation>
    </message>
    <message id="cloudSync.state.off">
        <translation>Désactivée.</translation>
    </message>
    <message id="cloudSync.state.starting">
        <translation>Lecture du document partagé…</translation>
    </message>
    <message id="cloudSync.state.current">
        <translation>À jour.</translation>
    </message>
    <message id="cloudSync.state.waiting">
        <translation>Des changements faits ici attendent d’être envoyés.</translation>
    </message>
    <message id="cloudSync.state.working">
        <translation>Synchronisation en cours…</translation>
    </message>
    <message id="cloudSync.state.heldBack">
        <translation>En attente de votre décision.</translation>
    </message>
    <message id="cloudSync.state.needsPassphrase">
        <translation>Le document partagé est chiffré.</translation>
    </message>
    <message id="cloudSync.state.failed">
        <translation>Synchronisation impossible.</translation>
    </message>
    <message id="cloudSync.retryAt %@">
        <translation>Prochain essai : %@.</translation>
    </message>
    <message id="cloudSync.lastSync %@">
        <translation>Dernière synchronisation : %@</translation>
    </message>
    <message id="cloudSync.lastDevice %@">
        <translation>dernier changement de %@</translation>
    </message>
    <message id="cloudSync.guard">
        <translation>Demander avant qu’un autre ordinateur ne supprime beaucoup d’éléments</translation>
    </message>
    <message id="cloudSync.guardHint">
        <translation>Plus d’un cinquième des éléments, ou plus de 1 000. Tant que vous n’avez pas décidé, rien ne change ici et rien n’est envoyé.</translation>
    </message>
    <message id="cloudSync.heldBack.someDevice">
        <translation>Un autre ordinateur</translation>
    </message>
    <message id="cloudSync.heldBack.who %@">
        <translation>Un changement de %@ a été retenu.</translation>
    </message>
    <message id="cloudSync.heldBack.removed %lld">
        <translation>Il supprimerait %lld éléments</translation>
    </message>
    <message id="cloudSync.heldBack.of %lld">
        <translation>sur %lld.</translation>
    </message>
    <message id="cloudSync.heldBack.nothingChanged">
        <translation>Rien n’a été modifié ici.</translation>
    </message>
    <message id="cloudSync.heldBack.preview">
        <translation>Afficher les changements…</translation>
    </message>
    <message id="cloudSync.encryptedOff">
        <translation>Le document n’est pas chiffré : qui peut lire l’emplacement peut lire vos liens.</translation>
    </message>
    <message id="cloudSync.encryptedOn">
        <translation>Le document est chiffré avec votre phrase secrète.</translation>
    </message>
    <message id="cloudSync.encryptMore">
        <translation>Chiffrer…</translation>
    </message>
    <message id="cloudSync.encrypt">
        <translation>Chiffrer</translation>
    </message>
    <message id="cloudSync.decryptMore">
        <translation>Ne plus chiffrer…</translation>
    </message>
    <message id="cloudSync.decryptTitle">
        <translation>Enregistrer le document sans chiffrement ?</translation>
    </message>
    <message id="cloudSync.decryptMessage">
        <translation>Qui peut lire l’emplacement pourra alors lire vos liens. La phrase secrète est retirée de votre trousseau.</translation>
    </message>
    <message id="cloudSync.decryptAction">
        <translation>Ne plus chiffrer</translation>
    </message>
    <message id="cloudSync.decrypted">
        <translation>Le document n’est plus chiffré.</translation>
    </message>
    <message id="cloudSync.passphraseTitle">
        <translation>Phrase secrète</translation>
    </message>
    <message id="cloudSync.passphraseChoose">
        <translation>Le document partagé sera chiffré avant de quitter cet ordinateur. Vos autres ordinateurs demanderont la même phrase secrète.</translation>
    </message>
    <message id="cloudSync.passphraseEnter">
        <translation>Saisissez la phrase secrète choisie sur un autre ordinateur. Elle est conservée dans votre trousseau.</translation>
    </message>
    <message id="cloudSync.passphrase">
        <translation>Phrase secrète :</translation>
    </message>
    <message id="cloudSync.passphraseAgain">
        <translation>Encore une fois :</translation>
    </message>
    <message id="cloudSync.passphraseWarning">
        <translation>Une phrase secrète perdue ne peut être retrouvée par personne. Notez-la et gardez-la en lieu sûr.</translation>
    </message>
    <message id="cloudSync.passphraseShort %lld">
        <translation>Au moins %lld caractères.</translation>
    </message>
    <message id="cloudSync.passphraseDiffers">
        <translation>Les deux ne sont pas encore identiques.</translation>
    </message>
    <message id="cloudSync.passphraseUse">
        <translation>Utiliser</translation>
    </message>
    <message id="cloudSync.passphraseStored">
        <translation>La phrase secrète est dans votre trousseau.</translation>
    </message>
    <message id="cloudSync.passphraseNeeded">
        <translation>Le document partagé est chiffré et cet ordinateur ne connaît pas sa phrase secrète. Rien n’est modifié tant que vous ne l’avez pas saisie.</translation>
    </message>
    <message id="cloudSync.passphraseEnterMore">
        <translation>Saisir la phrase secrète…</translation>
    </message>
    <message id="cloudSync.passphraseChangeMore">
        <translation>Changer la phrase secrète…</translation>
    </message>
    <message id="cloudSync.configureChoice.title">
        <translation>Il y a déjà un document partagé</translation>
    </message>
    <message id="cloudSync.configureChoice.message">
        <translation>Utilisez-le pour remplacer les liens d’ici par ceux de vos autres ordinateurs. Ou recommencez : les liens d’ici le remplacent alors, sur vos autres ordinateurs aussi. Ce qui est remplacé est conservé sous Instantanés.</translation>
    </message>
    <message id="cloudSync.configureChoice.useExisting">
        <translation>Utiliser le document</translation>
    </message>
    <message id="cloudSync.configureChoice.createNew">
        <translation>Recommencer</translation>
    </message>
    <message id="cloudSync.resultTitle">
        <translation>Synchronisation</translation>
    </message>
    <message id="cloudSync.saveSuccess">
        <translation>Synchronisé.</translation>
    </message>
    <message id="error.cloudSyncSave %@">
        <translation>Les liens n’ont pas pu être synchronisés. %@</translation>
    </message>
    <message id="error.cloudSyncLoad %@">
        <translation>Le document partagé n’a pas pu être chargé. %@</translation>
    </message>
    <message id="cloudSync.loadConfirmTitle">
        <translation>Remplacer les liens d’ici ?</translation>
    </message>
    <message id="cloudSync.loadConfirmMessage">
        <translation>Les liens et réglages d’ici sont remplacés par ceux du document partagé. Une copie des liens actuels est conservée sous Instantanés.</translation>
    </message>
    <message id="cloudSync.loadConfirmAction">
        <translation>Remplacer</translation>
    </message>
    <message id="cloudSync.loadSuccess %@">
        <translation>Le document partagé a été chargé. Éléments : %@</translation>
    </message>
    <message id="menu.syncHeldBack">
        <translation>Synchronisation : un grand changement attend votre décision</translation>
    </message>
    <message id="menu.syncPassphrase">
        <translation>Synchronisation : phrase secrète requise</translation>
    </message>
    <message id="menu.syncFailed">
        <translation>La synchronisation demande votre attention</translation>
    </message>
    <message id="cloudSync.document.empty">
        <translation>Le fichier partagé est vide. Il a été laissé tel quel et rien n’a été modifié ici.</translation>
    </message>
    <message id="cloudSync.document.undecodable">
        <translation>Le fichier partagé est endommagé ou n’est pas un document Orvelle. Il a été laissé tel quel et rien n’a été modifié ici.</translation>
    </message>
    <message id="cloudSync.document.newer">
        <translation>Le fichier partagé a été écrit par une version plus récente d’Orvelle. Mettez Orvelle à jour sur cet ordinateur pour continuer.</translation>
    </message>
    <message id="cloudSync.document.tooLarge">
        <translation>Le fichier partagé est trop volumineux ou ses groupes sont imbriqués trop profondément. Rien n’a été modifié.</translation>
    </message>
    <message id="cloudSync.document.needsPassphrase">
        <translation>Le fichier partagé est chiffré. Saisissez sa phrase secrète sur cet ordinateur.</translation>
    </message>
    <message id="cloudSync.document.wrongPassphrase">
        <translation>La phrase secrète n’ouvre pas le fichier partagé.</translation>
    </message>
    <message id="cloudSync.failure.unavailable">
        <translation>L’emplacement du fichier partagé est inaccessible.</translation>
    </message>
    <message id="cloudSync.failure.missing">
        <translation>Il n’y a pas de fichier partagé à cet emplacement.</translation>
    </message>
    <message id="cloudSync.failure.noData">
        <translation>Le fichier partagé n’a pas pu être lu.</translation>
    </message>
    <message id="cloudSync.failure.conflict">
        <translation>D’autres ordinateurs modifient sans cesse le fichier partagé. Vos modifications sont conservées et seront renvoyées.</translation>
    </message>
    <message id="cloudSync.failure.locked">
        <translation>Un autre ordinateur occupe le fichier partagé. Vos modifications sont conservées et seront renvoyées.</translation>
    </message>
    <message id="cloudSync.failure.unsafe">
        <translation>Ce serveur ne permet pas de partager le fichier en toute sécurité : un ordinateur pourrait écraser les modifications d’un autre.</translation>
    </message>
    <message id="cloudSync.failure.authentication">
        <translation>L’accès a été refusé. Vérifiez le nom d’utilisateur et le mot de passe.</translation>
    </message>
    <message id="cloudSync.failure.noSecretStore">
        <translation>Le trousseau est inutilisable. Déverrouillez-le ou lancez un service de trousseau.</translation>
    </message>
    <message id="cloudSync.failure.noSpace">
        <translation>Il n’y a plus d’espace à l’emplacement du fichier partagé.</translation>
    </message>
    <message id="cloudSync.failure.notADocument">
        <translation>Autre chose est arrivé à la place du fichier partagé, peut-être la page de connexion d’un réseau.</translation>
    </message>
    <message id="cloudSync.failure.tls">
        <translation>Le certificat du serveur n’est pas fiable.</translation>
    </message>
    <message id="cloudSync.failure.timedOut">
        <translation>L’emplacement du fichier partagé a mis trop de temps à répondre.</translation>
    </message>
    <message id="cloudSync.failure.tooLarge">
        <translation>Le fichier partagé serait trop volumineux.</translation>
    </message>
    <message id="cloudSync.failure.io">
        <translation>Le fichier partagé n’a pas pu être lu ou écrit.</translation>
    </message>
    <message id="cloudSync.failure.heldBack">
        <translation>Une modification d’un autre ordinateur supprimerait de nombreux éléments. Décidez d’abord à son sujet.</translation>
    </message>
    <message id="cloudSync.failure.noSnapshot">
        <translation>Aucun instantané n’a pu être conservé ; rien n’a donc été modifié.</translation>
    </message>
    <message id="cloudSync.passphraseLabel">
        <translation>Orvelle : phrase secrète du fichier partagé</translation>
    </message>
    <message id="cloudSync.keyringLabel">
        <translation>Orvelle : mot de passe du serveur de synchronisation</translation>
    </message>
    <message id="cloudSync.placeNotStored">
        <translation>L’emplacement n’a pas pu être enregistré dans les réglages.</translation>
    </message>
    <message id="calendar.untitled">
        <translation>Événement sans titre</translation>
    </message>
    <message id="calendar.noFolder">
        <translation>Aucun. Ajoutez-en un qui contient des fichiers .ics.</translation>
    </message>
    <message id="calendar.foldersHint">
        <translation>Dossiers de fichiers .ics, avec leurs sous-dossiers, en plus des agendas que tient le bureau.</translation>
    </message>
    <message id="update.state.published %@">
        <translation>Publiée : %@.</translation>
    </message>
    <message id="update.state.checked %@">
        <translation>Dernière vérification : %@.</translation>
    </message>
    <message id="tip.title">
        <translation>Orvelle vous est utile ?</translation>
    </message>
    <message id="tip.message">
        <translation>Vous l’utilisez depuis une trentaine de jours. Si vous le souhaitez, laissez un pourboire : une page s’ouvre dans votre navigateur.</translation>
    </message>
    <message id="openProgram.title %@">
        <translation>« %@ » mène à un programme</translation>
    </message>
    <message id="openProgram.message">
        <translation>Ce lien vient d’un import ou d’un autre appareil. Ce qu’il ouvre s’exécuterait avec tous vos droits. Ne l’ouvrez que si vous en connaissez la provenance.</translation>
    </message>
    <message id="openProgram.executable %@">
        <translation>%@ est un fichier exécutable.</translation>
    </message>
    <message id="openProgram.script %@">
        <translation>%@ est un script.</translation>
    </message>
    <message id="openProgram.desktopEntry %@">
        <translation>%@ lance une application (fichier .desktop).</translation>
    </message>
    <message id="openProgram.programFile %@">
        <translation>%@ est d’un type qui s’exécute à l’ouverture.</translation>
    </message>
    <message id="openProgram.onShare %@">
        <translation>%@ est un programme sur un serveur ou à un autre emplacement.</translation>
    </message>
    <message id="openProgram.open">
        <translation>Ouvrir</translation>
    </message>
    <message id="openProgram.askFirst">
        <translation>Le lien vient d’un import ou d’un autre appareil ; choisissez-le dans le menu d’Orvelle, qui demande d’abord.</translation>
    </message>
    <message id="about.manual">
        <translation>Manuel</translation>
    </message>
    <message id="about.manualPage">
        <translation>manual.fr.html</translation>
    </message>
    <message id="shortcut.undecided">
        <translation>Le bureau demande si Orvelle peut utiliser cette combinaison.</translation>
    </message>
    <message id="shortcut.portalDescription">
        <translation>Ouvrir le menu d’Orvelle</translation>
    </message>
    <message id="shortcut.denied">
        <translation>Le bureau ou vous avez refusé le raccourci. Autorisez-le dans les réglages du bureau, ou associez-y une touche à la commande « orvelle toggle ».</translation>
    </message>
    <message id="shortcut.desktopTrigger %@">
        <translation>Défini par le bureau : %@</translation>
    </message>
    <message id="clipboard.forbidden">
        <translation>Le bureau ne montre pas ce qui est copié</translation>
    </message>
    <message id="clipboard.forbiddenHint">
        <translation>Ce bureau ne laisse pas les programmes en arrière-plan voir ce qui est copié : l’historique reste vide.</translation>
    </message>
    <message id="settings.splitter">
        <translation>Largeur de la liste</translation>
    </message>
    <message id="note.colorForNew">
        <translation>Utiliser pour les nouvelles notes</translation>
    </message>
    <message id="quit.unsavedTitle">
        <translation>Vos dernières modifications n’ont pas pu être enregistrées</translation>
    </message>
    <message id="quit.unsavedMessage">
        <translation>Si Orvelle quitte maintenant, elles seront perdues. Libérez de l’espace sur le disque ou rendez les réglages accessibles en écriture, puis quittez à nouveau.</translation>
    </message>
    <message id="quit.unsavedStay">
        <translation>Ne pas quitter</translation>
    </message>
    <message id="quit.unsavedQuit">
        <translation>Quitter et les perdre</translation>
    </message>
    <message id="settings.launchAtLoginFailed">
        <translation>Le lancement à l’ouverture de session n’a pas pu être modifié. Le fichier prévu par le bureau ne peut pas être écrit.</translation>
    </message>
    <message id="settings.entryDropped">
        <translation>La saisie ne peut pas être utilisée : l’élément reste comme il était.</translation>
    </message>
    <message id="cloudSync.failure.interrupted">
        <translation>Cette opération a été interrompue. Veuillez réessayer.</translation>
    </message>
    <message id="settings.closeLoses">
        <translation>Votre saisie ne peut pas être enregistrée. Fermez à nouveau la fenêtre pour y renoncer.</translation>
    </message>
    <message id="cloudSync.encryptionNotStored">
        <translation>Le choix concernant le chiffrement n’a pas pu être enregistré dans les réglages. Veuillez réessayer.</translation>
    </message>
</context>
</TS>
