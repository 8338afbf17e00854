<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
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
    <message id="error.import %@">
        <translation>Le fichier n’a pas pu être importé : %@</translation>
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
    <message id="menulet.iconSubtitle">
        <translation>L’image qui représente Orvelle dans le tableau de bord.</translation>
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
    <message id="note.defaultName">
        <translation>Nouvelle note</translation>
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
    <message id="sheet.cancel">
        <translation>Annuler</translation>
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
</context>
</TS>
