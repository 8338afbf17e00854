<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="about.version %@">
        <translation>Version %@</translation>
    </message>
    <message id="about.data">
        <translation>Where your data lies</translation>
    </message>
    <message id="about.settingsPath">
        <translation>Links and settings:</translation>
    </message>
    <message id="about.dataFolder">
        <translation>Snapshots:</translation>
    </message>
    <message id="about.showFolder">
        <translation>Show</translation>
    </message>
    <message id="calendar.title">
        <translation>Calendar</translation>
    </message>
    <message id="clipboard.title">
        <translation>Clipboard</translation>
    </message>
    <message id="color.red">
        <translation>Red</translation>
    </message>
    <message id="color.orange">
        <translation>Orange</translation>
    </message>
    <message id="color.yellow">
        <translation>Yellow</translation>
    </message>
    <message id="color.green">
        <translation>Green</translation>
    </message>
    <message id="color.cyan">
        <translation>Cyan</translation>
    </message>
    <message id="color.blue">
        <translation>Blue</translation>
    </message>
    <message id="color.purple">
        <translation>Purple</translation>
    </message>
    <message id="color.pink">
        <translation>Pink</translation>
    </message>
    <message id="color.gray">
        <translation>Grey</translation>
    </message>
    <message id="color.pureRed">
        <translation>Pure red</translation>
    </message>
    <message id="color.pureYellow">
        <translation>Pure yellow</translation>
    </message>
    <message id="color.pureGreen">
        <translation>Pure green</translation>
    </message>
    <message id="color.pureCyan">
        <translation>Pure cyan</translation>
    </message>
    <message id="color.pureBlue">
        <translation>Pure blue</translation>
    </message>
    <message id="color.pureMagenta">
        <translation>Pure magenta</translation>
    </message>
    <message id="color.black">
        <translation>Black</translation>
    </message>
    <message id="color.white">
        <translation>White</translation>
    </message>
    <message id="debug.title">
        <translation>Debug mode</translation>
    </message>
    <message id="debug.subtitle">
        <translation>Try Orvelle on a separate, throw-away set of data. Your own data stays untouched. Debug mode ends when Orvelle quits.</translation>
    </message>
    <message id="debug.enterMode">
        <translation>Enter debug mode</translation>
    </message>
    <message id="debug.exitMode">
        <translation>Leave debug mode</translation>
    </message>
    <message id="debug.clearData">
        <translation>Clear debug data…</translation>
    </message>
    <message id="debug.clearTitle">
        <translation>Clear all debug data?</translation>
    </message>
    <message id="debug.clearMessage">
        <translation>Everything made in debug mode is deleted for good. Your own data is not touched.</translation>
    </message>
    <message id="debug.clear">
        <translation>Clear</translation>
    </message>
    <message id="debug.notice">
        <translation>Debug mode is on: you see a separate set of data.</translation>
    </message>
    <message id="error.import %@">
        <translation>The file could not be imported: %@</translation>
    </message>
    <message id="error.importNotAFile">
        <translation>It is not a file.</translation>
    </message>
    <message id="error.openTitle">
        <translation>Orvelle cannot open its settings</translation>
    </message>
    <message id="error.openNewer %@">
        <translation>“%@” was written by a newer version of Orvelle. Nothing was changed; please update Orvelle.</translation>
    </message>
    <message id="error.openInaccessible %@">
        <translation>“%@” cannot be accessed.</translation>
    </message>
    <message id="error.openDamaged %@">
        <translation>“%@” is damaged and could not be moved aside.</translation>
    </message>
    <message id="error.openBusy %@">
        <translation>Another program is using “%@”. Please try again.</translation>
    </message>
    <message id="error.openOther %@">
        <translation>“%@” cannot be opened.</translation>
    </message>
    <message id="error.damagedTitle">
        <translation>Your settings were damaged</translation>
    </message>
    <message id="error.damagedMessage %@">
        <translation>Orvelle starts with empty settings. The damaged file was kept as “%@”.</translation>
    </message>
    <message id="error.saveTitle">
        <translation>Your changes cannot be saved</translation>
    </message>
    <message id="error.saveReadOnly">
        <translation>The settings folder may not be written. What was saved before is untouched.</translation>
    </message>
    <message id="error.saveDiskFull">
        <translation>The disk is full. What was saved before is untouched.</translation>
    </message>
    <message id="error.saveBusy">
        <translation>Another program kept the settings busy too long. What was saved before is untouched.</translation>
    </message>
    <message id="error.saveOther %@">
        <translation>What was saved before is untouched. The system says: %@</translation>
    </message>
    <message id="error.unreadableTitle">
        <translation>Your links could not be read</translation>
    </message>
    <message id="error.unreadableMessage %@">
        <translation>The stored links are kept untouched under “%@”. The settings window can try to restore them.</translation>
    </message>
    <message id="icon.folder">
        <translation>Folder</translation>
    </message>
    <message id="icon.star">
        <translation>Star</translation>
    </message>
    <message id="icon.heart">
        <translation>Heart</translation>
    </message>
    <message id="icon.bookmark">
        <translation>Bookmark</translation>
    </message>
    <message id="icon.tag">
        <translation>Tag</translation>
    </message>
    <message id="icon.flag">
        <translation>Flag</translation>
    </message>
    <message id="icon.bolt">
        <translation>Lightning</translation>
    </message>
    <message id="icon.flame">
        <translation>Flame</translation>
    </message>
    <message id="icon.globe">
        <translation>Globe</translation>
    </message>
    <message id="icon.house">
        <translation>House</translation>
    </message>
    <message id="icon.person">
        <translation>Person</translation>
    </message>
    <message id="icon.gear">
        <translation>Gear</translation>
    </message>
    <message id="icon.code">
        <translation>Code</translation>
    </message>
    <message id="icon.terminal">
        <translation>Terminal</translation>
    </message>
    <message id="icon.book">
        <translation>Book</translation>
    </message>
    <message id="icon.photo">
        <translation>Photo</translation>
    </message>
    <message id="icon.music">
        <translation>Music</translation>
    </message>
    <message id="icon.film">
        <translation>Film</translation>
    </message>
    <message id="icon.game">
        <translation>Games</translation>
    </message>
    <message id="icon.accounting">
        <translation>Accounting</translation>
    </message>
    <message id="icon.cup">
        <translation>Cup</translation>
    </message>
    <message id="icon.cart">
        <translation>Shopping cart</translation>
    </message>
    <message id="icon.briefcase">
        <translation>Briefcase</translation>
    </message>
    <message id="icon.hammer">
        <translation>Hammer</translation>
    </message>
    <message id="icon.paintbrush">
        <translation>Paintbrush</translation>
    </message>
    <message id="icon.scissors">
        <translation>Scissors</translation>
    </message>
    <message id="icon.gift">
        <translation>Gift</translation>
    </message>
    <message id="icon.airplane">
        <translation>Aeroplane</translation>
    </message>
    <message id="icon.car">
        <translation>Car</translation>
    </message>
    <message id="icon.graduationcap">
        <translation>Graduation cap</translation>
    </message>
    <message id="icon.stethoscope">
        <translation>Stethoscope</translation>
    </message>
    <message id="icon.wrench">
        <translation>Tools</translation>
    </message>
    <message id="icon.archivebox">
        <translation>Archive box</translation>
    </message>
    <message id="icon.tray">
        <translation>Tray</translation>
    </message>
    <message id="icon.paperclip">
        <translation>Paper clip</translation>
    </message>
    <message id="icon.server">
        <translation>Server</translation>
    </message>
    <message id="icon.work">
        <translation>Work</translation>
    </message>
    <message id="icon.sport">
        <translation>Sport</translation>
    </message>
    <message id="icon.at">
        <translation>At sign</translation>
    </message>
    <message id="icon.cloud">
        <translation>Cloud</translation>
    </message>
    <message id="icon.soccer">
        <translation>Football</translation>
    </message>
    <message id="icon.wineglass">
        <translation>Wine glass</translation>
    </message>
    <message id="icon.tshirt">
        <translation>T-shirt</translation>
    </message>
    <message id="icon.diamond">
        <translation>Diamond</translation>
    </message>
    <message id="icon.pawprint">
        <translation>Paw print</translation>
    </message>
    <message id="icon.building">
        <translation>Building</translation>
    </message>
    <message id="icon.camera">
        <translation>Camera</translation>
    </message>
    <message id="icon.dumbbell">
        <translation>Dumbbell</translation>
    </message>
    <message id="icon.networkDrive">
        <translation>Network drive</translation>
    </message>
    <message id="icon.network">
        <translation>Network</translation>
    </message>
    <message id="icon.lock">
        <translation>Padlock</translation>
    </message>
    <message id="icon.desktopcomputer">
        <translation>Desktop computer</translation>
    </message>
    <message id="icon.externaldrive">
        <translation>External drive</translation>
    </message>
    <message id="icon.note">
        <translation>Note</translation>
    </message>
    <message id="icon.document">
        <translation>Document</translation>
    </message>
    <message id="icon.plaintext">
        <translation>Plain text</translation>
    </message>
    <message id="icon.checklist">
        <translation>Checklist</translation>
    </message>
    <message id="icon.list">
        <translation>List</translation>
    </message>
    <message id="import.title">
        <translation>Import</translation>
    </message>
    <message id="import.fileOpenTitle">
        <translation>Import links</translation>
    </message>
    <message id="import.fileOpenMessage %@">
        <translation>What should happen with the links in “%@”?</translation>
    </message>
    <message id="import.replaceAll">
        <translation>Replace all</translation>
    </message>
    <message id="import.merge">
        <translation>Merge</translation>
    </message>
    <message id="import.sync">
        <translation>Synchronise</translation>
    </message>
    <message id="menu.settings">
        <translation>Settings</translation>
    </message>
    <message id="menu.quit">
        <translation>Quit Orvelle</translation>
    </message>
    <message id="menu.noLinks">
        <translation>No links yet</translation>
    </message>
    <message id="menu.empty">
        <translation>Empty</translation>
    </message>
    <message id="menu.quickAdd">
        <translation>Add a link</translation>
    </message>
    <message id="menu.newLinkShort">
        <translation>Link</translation>
    </message>
    <message id="menu.quickNote">
        <translation>New note</translation>
    </message>
    <message id="menu.newNoteShort">
        <translation>Note</translation>
    </message>
    <message id="menulet.iconTitle">
        <translation>Tray icon</translation>
    </message>
    <message id="menulet.iconLink">
        <translation>Link</translation>
    </message>
    <message id="menulet.iconLinkCircle">
        <translation>Link in a circle</translation>
    </message>
    <message id="menulet.iconStar">
        <translation>Star</translation>
    </message>
    <message id="menulet.iconBolt">
        <translation>Lightning</translation>
    </message>
    <message id="menulet.iconBookmark">
        <translation>Bookmark</translation>
    </message>
    <message id="menulet.iconCommand">
        <translation>Command</translation>
    </message>
    <message id="menulet.iconGlobe">
        <translation>Globe</translation>
    </message>
    <message id="menulet.iconSparkle">
        <translation>Sparkle</translation>
    </message>
    <message id="network.title">
        <translation>Network</translation>
    </message>
    <message id="note.defaultName">
        <translation>New note</translation>
    </message>
    <message id="note.name">
        <translation>Name of the note</translation>
    </message>
    <message id="note.color">
        <translation>Colour of the note</translation>
    </message>
    <message id="note.text">
        <translation>Text of the note</translation>
    </message>
    <message id="note.placeholder">
        <translation>Write something. It is saved by itself.</translation>
    </message>
    <message id="note.changedElsewhere">
        <translation>This note was changed elsewhere. You see its new text; undo brings yours back.</translation>
    </message>
    <message id="note.conflict">
        <translation>This note was changed elsewhere while you were typing.</translation>
    </message>
    <message id="note.keepBoth">
        <translation>Keep both</translation>
    </message>
    <message id="note.keepMine">
        <translation>Keep mine</translation>
    </message>
    <message id="note.useTheirs">
        <translation>Use the other</translation>
    </message>
    <message id="note.otherVersion">
        <translation>— Version from elsewhere —</translation>
    </message>
    <message id="note.gone">
        <translation>This note is no longer in your list. Its text stays in this window.</translation>
    </message>
    <message id="note.addAgain">
        <translation>Add again</translation>
    </message>
    <message id="notice.dismiss">
        <translation>Dismiss this message</translation>
    </message>
    <message id="quickAdd.topLevel">
        <translation>Top level of the menu</translation>
    </message>
    <message id="quickAdd.address">
        <translation>Address or path:</translation>
    </message>
    <message id="quickAdd.urlPlaceholder">
        <translation>https://example.org or ~/Documents</translation>
    </message>
    <message id="quickAdd.paste">
        <translation>Paste</translation>
    </message>
    <message id="quickAdd.name">
        <translation>Name:</translation>
    </message>
    <message id="quickAdd.namePlaceholder">
        <translation>Optional</translation>
    </message>
    <message id="quickAdd.selectFolder">
        <translation>Group:</translation>
    </message>
    <message id="quickAdd.add">
        <translation>Add</translation>
    </message>
    <message id="quickAdd.invalid">
        <translation>This is neither an address nor a path that Orvelle can open.</translation>
    </message>
    <message id="quickAdd.nothingToPaste">
        <translation>The clipboard holds no address and no file.</translation>
    </message>
    <message id="quit.confirmTitle">
        <translation>Quit Orvelle?</translation>
    </message>
    <message id="quit.confirmMessage">
        <translation>Your links leave the tray until you start Orvelle again. To keep them there, close only the window.</translation>
    </message>
    <message id="quit.confirm">
        <translation>Quit</translation>
    </message>
    <message id="quit.closeWindow">
        <translation>Close window only</translation>
    </message>
    <message id="repair.alertTitle">
        <translation>Some files or folders cannot be reached</translation>
    </message>
    <message id="repair.alertMessage">
        <translation>Orvelle can look for them again if you choose a folder that contains them.</translation>
    </message>
    <message id="repair.fix">
        <translation>Choose folder…</translation>
    </message>
    <message id="repair.later">
        <translation>Later</translation>
    </message>
    <message id="repair.message">
        <translation>Choose a folder that contains your linked files and folders</translation>
    </message>
    <message id="repair.prompt">
        <translation>Choose</translation>
    </message>
    <message id="settings.windowTitle">
        <translation>Orvelle Settings</translation>
    </message>
    <message id="settings.links">
        <translation>Your links</translation>
    </message>
    <message id="settings.column.name">
        <translation>Name</translation>
    </message>
    <message id="settings.column.kind">
        <translation>Kind</translation>
    </message>
    <message id="settings.addLink">
        <translation>Add link</translation>
    </message>
    <message id="settings.addNote">
        <translation>New note</translation>
    </message>
    <message id="settings.open">
        <translation>Open</translation>
    </message>
    <message id="settings.rename">
        <translation>Rename</translation>
    </message>
    <message id="settings.remove">
        <translation>Remove</translation>
    </message>
    <message id="settings.undo">
        <translation>Undo</translation>
    </message>
    <message id="settings.redo">
        <translation>Redo</translation>
    </message>
    <message id="settings.removed %@">
        <translation>“%@” was removed.</translation>
    </message>
    <message id="field.clear">
        <translation>Clear</translation>
    </message>
    <message id="settings.empty.title">
        <translation>No links yet</translation>
    </message>
    <message id="settings.empty.message">
        <translation>Add a web address, a file or a folder. It is then one click away in the tray.</translation>
    </message>
    <message id="settings.rescued.message %@">
        <translation>Saved links could not be read. They are kept untouched under “%@”.</translation>
    </message>
    <message id="settings.rescued.restore">
        <translation>Try again</translation>
    </message>
    <message id="settings.rescued.failedTitle">
        <translation>The links still cannot be read</translation>
    </message>
    <message id="settings.rescued.failedMessage %@">
        <translation>The data under “%@” is damaged or comes from a newer version of Orvelle. It stays where it is.</translation>
    </message>
    <message id="settings.behaviour">
        <translation>Behaviour</translation>
    </message>
    <message id="settings.confirmBeforeQuit">
        <translation>Ask before quitting</translation>
    </message>
    <message id="settings.widgetOrder">
        <translation>Order in the menu</translation>
    </message>
    <message id="settings.moveUp">
        <translation>Move up</translation>
    </message>
    <message id="settings.moveDown">
        <translation>Move down</translation>
    </message>
    <message id="sheet.cancel">
        <translation>Cancel</translation>
    </message>
    <message id="sheet.ok">
        <translation>OK</translation>
    </message>
    <message id="systemInfo.title">
        <translation>System</translation>
    </message>
    <message id="timer.title">
        <translation>Timer</translation>
    </message>
    <message id="tray.missingTitle">
        <translation>No tray was found</translation>
    </message>
    <message id="tray.missingMessage">
        <translation>Orvelle keeps running, but this desktop shows no tray icon. GNOME needs an extension for that, such as “AppIndicator and KStatusNotifierItem Support”. The command “orvelle toggle” opens the menu, too; you can bind it to a key in your desktop’s keyboard settings.</translation>
    </message>
    <message id="type.file">
        <translation>File</translation>
    </message>
    <message id="type.folder">
        <translation>Folder</translation>
    </message>
    <message id="type.smb">
        <translation>SMB share</translation>
    </message>
    <message id="type.afp">
        <translation>AFP share</translation>
    </message>
    <message id="type.ftp">
        <translation>FTP server</translation>
    </message>
    <message id="type.nfs">
        <translation>NFS share</translation>
    </message>
    <message id="type.vnc">
        <translation>Screen sharing</translation>
    </message>
    <message id="type.email">
        <translation>Email address</translation>
    </message>
    <message id="type.web">
        <translation>Web page</translation>
    </message>
    <message id="type.url">
        <translation>Address</translation>
    </message>
    <message id="type.group">
        <translation>Group</translation>
    </message>
    <message id="type.note">
        <translation>Note</translation>
    </message>
    <message id="weather.title">
        <translation>Weather</translation>
    </message>
    <message id="welcome.title">
        <translation>Welcome to Orvelle</translation>
    </message>
    <message id="welcome.subtitle">
        <translation>Everything you open often, one click away in the tray.</translation>
    </message>
    <message id="welcome.featureFolders">
        <translation>Folders</translation>
    </message>
    <message id="welcome.featureFoldersDesc">
        <translation>Jump to the folders you work in.</translation>
    </message>
    <message id="welcome.featureFiles">
        <translation>Files</translation>
    </message>
    <message id="welcome.featureFilesDesc">
        <translation>Open documents with their own application.</translation>
    </message>
    <message id="welcome.featureWeb">
        <translation>Web pages</translation>
    </message>
    <message id="welcome.featureWebDesc">
        <translation>Keep your favourite addresses in groups.</translation>
    </message>
    <message id="welcome.featureNetwork">
        <translation>Network places</translation>
    </message>
    <message id="welcome.featureNetworkDesc">
        <translation>Reach shared drives and servers.</translation>
    </message>
    <message id="welcome.start">
        <translation>Get started</translation>
    </message>
    <message id="welcome.show">
        <translation>Show the welcome…</translation>
    </message>
    <message id="quicklaunch.title">
        <translation>Quick launch</translation>
    </message>
    <message id="clipboard.subtitle">
        <translation>The texts and pictures you copied last.</translation>
    </message>
    <message id="quicklaunch.subtitle">
        <translation>The applications you start most, in one row.</translation>
    </message>
    <message id="calendar.subtitle">
        <translation>What comes next in your calendars.</translation>
    </message>
    <message id="weather.subtitle">
        <translation>The weather now and over the next days.</translation>
    </message>
    <message id="systemInfo.subtitle">
        <translation>Processor, memory and disk at a glance.</translation>
    </message>
    <message id="network.subtitle">
        <translation>How fast data comes in and goes out.</translation>
    </message>
    <message id="timer.subtitle">
        <translation>A countdown that tells you when time is up.</translation>
    </message>
    <message id="widget.show">
        <translation>Show in the menu</translation>
    </message>
    <message id="widget.off">
        <translation>Off</translation>
    </message>
    <message id="widget.menuBarOnly">
        <translation>Only in the menu of the tray icon</translation>
    </message>
    <message id="widget.menuBarOnlyHint">
        <translation>Leaves the widget out of the menu that the keyboard shortcut opens.</translation>
    </message>
    <message id="timer.doneTitle">
        <translation>Time is up</translation>
    </message>
    <message id="timer.doneMessage %@">
        <translation>The timer of %@ has ended.</translation>
    </message>
    <message id="settings.tab.general">
        <translation>&amp;General</translation>
    </message>
    <message id="settings.tab.widgets">
        <translation>&amp;Widgets</translation>
    </message>
    <message id="settings.tab.sync">
        <translation>&amp;Sync</translation>
    </message>
    <message id="settings.tab.about">
        <translation>A&amp;bout</translation>
    </message>
    <message id="settings.dropHere">
        <translation>Drop to import</translation>
    </message>
    <message id="settings.dropRefused">
        <translation>Only exported documents, bookmark files and folders of links can be imported.</translation>
    </message>
    <message id="settings.widgetOrderHint">
        <translation>The widgets stand in the menu in this order. Drag one onto another to place it just above, or use the buttons.</translation>
    </message>
    <message id="widget.notYet">
        <translation>This widget is not part of this version yet. Its place in the menu is kept.</translation>
    </message>
    <message id="sync.backup">
        <translation>Backup</translation>
    </message>
    <message id="sync.backupHint">
        <translation>All links, notes and settings in one file, to keep or to take to another computer.</translation>
    </message>
    <message id="sync.export">
        <translation>&amp;Export…</translation>
    </message>
    <message id="sync.import">
        <translation>&amp;Import…</translation>
    </message>
    <message id="sync.bookmarks">
        <translation>Browser bookmarks</translation>
    </message>
    <message id="sync.bookmarksHint">
        <translation>The HTML file that every browser reads and writes.</translation>
    </message>
    <message id="sync.exportBookmarks">
        <translation>E&amp;xport…</translation>
    </message>
    <message id="sync.importBookmarks">
        <translation>I&amp;mport…</translation>
    </message>
    <message id="sync.linkFolder">
        <translation>Link files</translation>
    </message>
    <message id="sync.linkFolderHint">
        <translation>A folder of .desktop, .url or .webloc files, with its subfolders as groups.</translation>
    </message>
    <message id="sync.importLinkFolder">
        <translation>Import &amp;folder…</translation>
    </message>
    <message id="snapshot.title">
        <translation>Snapshots</translation>
    </message>
    <message id="snapshot.subtitle">
        <translation>Orvelle keeps a copy of your links before every step that takes something away. The last 50 are kept, and one a day for 30 days.</translation>
    </message>
    <message id="snapshot.column.date">
        <translation>Date</translation>
    </message>
    <message id="snapshot.column.items">
        <translation>Items</translation>
    </message>
    <message id="snapshot.reason.remove">
        <translation>Removing</translation>
    </message>
    <message id="snapshot.reason.replace">
        <translation>Replacing everything by an import</translation>
    </message>
    <message id="snapshot.reason.import">
        <translation>An import</translation>
    </message>
    <message id="snapshot.reason.merge">
        <translation>Merging an import</translation>
    </message>
    <message id="snapshot.reason.sync">
        <translation>A synchronisation</translation>
    </message>
    <message id="snapshot.reason.undo">
        <translation>Undoing</translation>
    </message>
    <message id="snapshot.reason.redo">
        <translation>Redoing</translation>
    </message>
    <message id="snapshot.reason.restore">
        <translation>Restoring a snapshot</translation>
    </message>
    <message id="snapshot.reason.other">
        <translation>Another change</translation>
    </message>
    <message id="snapshot.today %@">
        <translation>Today, %@</translation>
    </message>
    <message id="snapshot.yesterday %@">
        <translation>Yesterday, %@</translation>
    </message>
    <message id="snapshot.oneItem">
        <translation>1 item</translation>
    </message>
    <message id="snapshot.items %lld">
        <translation>%lld items</translation>
    </message>
    <message id="snapshot.restore">
        <translation>&amp;Restore</translation>
    </message>
    <message id="snapshot.close">
        <translation>Close</translation>
    </message>
    <message id="snapshot.emptyTitle">
        <translation>No snapshots yet</translation>
    </message>
    <message id="snapshot.emptyMessage">
        <translation>The first one is taken by itself before something is removed, replaced or imported.</translation>
    </message>
    <message id="snapshot.previewTitle">
        <translation>Snapshot</translation>
    </message>
    <message id="snapshot.oneComesBack">
        <translation>1 item comes back</translation>
    </message>
    <message id="snapshot.comeBack %lld">
        <translation>%lld items come back</translation>
    </message>
    <message id="snapshot.oneGoes">
        <translation>1 item that is not in it goes</translation>
    </message>
    <message id="snapshot.go %lld">
        <translation>%lld items that are not in it go</translation>
    </message>
    <message id="snapshot.oneChanges">
        <translation>1 item is again as it was</translation>
    </message>
    <message id="snapshot.change %lld">
        <translation>%lld items are again as they were</translation>
    </message>
    <message id="snapshot.oneMoves">
        <translation>1 item moves back to its place</translation>
    </message>
    <message id="snapshot.move %lld">
        <translation>%lld items move back to their places</translation>
    </message>
    <message id="snapshot.reorders">
        <translation>the order is again as it was</translation>
    </message>
    <message id="snapshot.fate.comesBack">
        <translation>comes back</translation>
    </message>
    <message id="snapshot.fate.changes">
        <translation>as it was</translation>
    </message>
    <message id="snapshot.fate.moves">
        <translation>moves</translation>
    </message>
    <message id="snapshot.unreadableTitle">
        <translation>This snapshot cannot be read</translation>
    </message>
    <message id="snapshot.refusedTitle">
        <translation>The snapshot was not restored</translation>
    </message>
    <message id="about.licence">
        <translation>Licences</translation>
    </message>
    <message id="about.readLicence">
        <translation>Read</translation>
    </message>
    <message id="about.licenceOf %@">
        <translation>Licence of %@</translation>
    </message>
    <message id="welcome.begin">
        <translation>A quick start</translation>
    </message>
    <message id="welcome.addSample">
        <translation>Add a sample group</translation>
    </message>
    <message id="welcome.sampleAdded">
        <translation>Sample group added</translation>
    </message>
    <message id="welcome.importBookmarks">
        <translation>Import bookmarks…</translation>
    </message>
    <message id="welcome.sampleGroup">
        <translation>First steps</translation>
    </message>
    <message id="welcome.sampleHome">
        <translation>Home folder</translation>
    </message>
    <message id="welcome.sampleDocuments">
        <translation>Documents</translation>
    </message>
    <message id="welcome.sampleNote">
        <translation>How it works</translation>
    </message>
    <message id="foreign.unnamedFolder">
        <translation>Unnamed folder</translation>
    </message>
    <message id="foreign.errorNotAFolder">
        <translation>This folder does not exist.</translation>
    </message>
    <message id="foreign.errorNotBookmarks">
        <translation>This file is not a bookmark file of a browser.</translation>
    </message>
    <message id="foreign.errorNoLinks">
        <translation>No links were found.</translation>
    </message>
    <message id="foreign.errorTooLarge">
        <translation>The file is too large. Up to 64 MB can be imported.</translation>
    </message>
    <message id="foreign.errorTooManyItems">
        <translation>There are too many links. Up to 200,000 can be imported.</translation>
    </message>
    <message id="foreign.errorTooDeep">
        <translation>The file is nested too deeply.</translation>
    </message>
    <message id="foreign.errorCancelled">
        <translation>The import was cancelled. Nothing has changed.</translation>
    </message>
    <message id="error.importCancelled">
        <translation>The import was cancelled; nothing was changed.</translation>
    </message>
    <message id="error.importNotStored">
        <translation>The links could not be saved, so nothing was imported.</translation>
    </message>
    <message id="settings.addFile">
        <translation>Add files…</translation>
    </message>
    <message id="settings.addFolder">
        <translation>Add a folder…</translation>
    </message>
    <message id="settings.addGroup">
        <translation>New group</translation>
    </message>
    <message id="settings.newGroupName">
        <translation>New group</translation>
    </message>
    <message id="settings.indent">
        <translation>Move into the group above</translation>
    </message>
    <message id="settings.outdent">
        <translation>Move out of the group</translation>
    </message>
    <message id="settings.move">
        <translation>Move</translation>
    </message>
    <message id="settings.moveTo">
        <translation>Move to group</translation>
    </message>
    <message id="settings.topLevel">
        <translation>Top level</translation>
    </message>
    <message id="settings.color">
        <translation>Colour</translation>
    </message>
    <message id="settings.defaultColor">
        <translation>Default colour</translation>
    </message>
    <message id="settings.icon">
        <translation>Icon</translation>
    </message>
    <message id="settings.defaultIcon">
        <translation>Default</translation>
    </message>
    <message id="settings.iconSearch">
        <translation>Search icons</translation>
    </message>
    <message id="settings.iconNone">
        <translation>No icon has that name</translation>
    </message>
    <message id="settings.various">
        <translation>Various</translation>
    </message>
    <message id="settings.coloredInMenu">
        <translation>Coloured in the menu</translation>
    </message>
    <message id="edit.sortAlphabetically">
        <translation>Sort alphabetically</translation>
    </message>
    <message id="settings.editNote">
        <translation>Edit the note</translation>
    </message>
    <message id="settings.address">
        <translation>Address</translation>
    </message>
    <message id="settings.path">
        <translation>Path</translation>
    </message>
    <message id="settings.choose">
        <translation>Choose…</translation>
    </message>
    <message id="settings.chooseFile">
        <translation>Choose a file</translation>
    </message>
    <message id="settings.chooseFolder">
        <translation>Choose a folder</translation>
    </message>
    <message id="settings.badPath">
        <translation>A path begins with “/” or “~”. Press Escape to take this back.</translation>
    </message>
    <message id="settings.badAddress">
        <translation>This is not an address that can be opened, such as https://example.org. Press Escape to take it back.</translation>
    </message>
    <message id="settings.itemGone">
        <translation>This item was removed elsewhere. What you typed stays here until you select another.</translation>
    </message>
    <message id="settings.broken">
        <translation>No longer there</translation>
    </message>
    <message id="settings.nothingSelected">
        <translation>Select something in the list to change it here.</translation>
    </message>
    <message id="settings.editor">
        <translation>What is selected</translation>
    </message>
    <message id="settings.selected %lld">
        <translation>%lld items selected</translation>
    </message>
    <message id="settings.memberCount %lld">
        <translation>Items inside: %lld</translation>
    </message>
    <message id="settings.removedSeveral %lld">
        <translation>%lld items were removed.</translation>
    </message>
    <message id="settings.search">
        <translation>Search names and addresses</translation>
    </message>
    <message id="settings.noMatch.title">
        <translation>Nothing found</translation>
    </message>
    <message id="settings.noMatch.message">
        <translation>No name and no address contains all of these words.</translation>
    </message>
    <message id="settings.noMatch.clear">
        <translation>Clear the search</translation>
    </message>
    <message id="settings.dropNothing">
        <translation>Nothing in there can be added. Drop files, folders or web addresses.</translation>
    </message>
    <message id="settings.refused.tooDeep">
        <translation>That group is at the third level, the last one: nothing can be moved into it.</translation>
    </message>
    <message id="settings.refused.intoItself">
        <translation>A group cannot be moved into itself.</translation>
    </message>
    <message id="settings.refused.notFound">
        <translation>It is no longer in the list.</translation>
    </message>
    <message id="settings.refused.notStored">
        <translation>Nothing was changed, because the copy to go back to could not be kept.</translation>
    </message>
    <message id="settings.siteIcons">
        <translation>Show the icons of web sites</translation>
    </message>
    <message id="settings.siteIconsHint %@">
        <translation>To fetch them, the host name of each web link (such as example.org) is sent to %@. Addresses on your own network are never sent.</translation>
    </message>
    <message id="note.format">
        <translation>Formatting</translation>
    </message>
    <message id="note.bold">
        <translation>Bold</translation>
    </message>
    <message id="note.italic">
        <translation>Italic</translation>
    </message>
    <message id="note.underline">
        <translation>Underline</translation>
    </message>
    <message id="note.strike">
        <translation>Strikethrough</translation>
    </message>
    <message id="note.size">
        <translation>Text size</translation>
    </message>
    <message id="note.size.small">
        <translation>Small</translation>
    </message>
    <message id="note.size.normal">
        <translation>Normal</translation>
    </message>
    <message id="note.size.large">
        <translation>Large</translation>
    </message>
    <message id="note.size.larger">
        <translation>Larger</translation>
    </message>
    <message id="note.size.huge">
        <translation>Huge</translation>
    </message>
    <message id="note.bullets">
        <translation>Bulleted list</translation>
    </message>
    <message id="note.numbers">
        <translation>Numbered list</translation>
    </message>
    <message id="note.checks">
        <translation>Checklist</translation>
    </message>
    <message id="note.link">
        <translation>Link</translation>
    </message>
    <message id="note.undo">
        <translation>Undo</translation>
    </message>
    <message id="note.redo">
        <translation>Redo</translation>
    </message>
    <message id="note.link.address">
        <translation>Address of the link</translation>
    </message>
    <message id="note.link.placeholder">
        <translation>Web or mail address</translation>
    </message>
    <message id="note.link.apply">
        <translation>Set link</translation>
    </message>
    <message id="note.link.open">
        <translation>Open link</translation>
    </message>
    <message id="note.link.edit">
        <translation>Edit link…</translation>
    </message>
    <message id="note.link.remove">
        <translation>Remove link</translation>
    </message>
    <message id="note.link.close">
        <translation>Close</translation>
    </message>
    <message id="note.link.unsafe">
        <translation>This is no address that a note can link to.</translation>
    </message>
    <message id="note.link.openHint">
        <translation>Ctrl+click to open</translation>
    </message>
    <message id="note.linkRefused">
        <translation>This link cannot be opened.</translation>
    </message>
    <message id="note.pastePlain">
        <translation>Paste without formatting</translation>
    </message>
    <message id="note.pasteRefused">
        <translation>There is no text to paste, or too much of it.</translation>
    </message>
    <message id="note.incomplete">
        <translation>This note has contents that cannot be shown here. They are kept until you change its text.</translation>
    </message>
    <message id="widget.mode">
        <translation>Show in the menu:</translation>
    </message>
    <message id="snapshot.changesTitle">
        <translation>If you restore it:</translation>
    </message>
    <message id="snapshot.noChange">
        <translation>nothing changes: your links are just like this</translation>
    </message>
    <message id="snapshot.unreadable %@">
        <translation>Your links are as they were. What went wrong: %@</translation>
    </message>
    <message id="snapshot.refused">
        <translation>Your links as they are now could not be kept first, so nothing was changed. Is the disk full?</translation>
    </message>
    <message id="about.licenceText">
        <translation>Orvelle is free software and rests on the work of others. Thank you!</translation>
    </message>
    <message id="about.licenceUnreadable %@">
        <translation>The text cannot be read: %@</translation>
    </message>
    <message id="welcome.sampleNoteText">
        <translation>Click the icon in the tray: your links are in the menu.
The buttons below them add a link, make a note like this one, and open the settings.
You can change or remove everything here.</translation>
    </message>
    <message id="snapshot.preview">
        <translation>&amp;Look inside…</translation>
    </message>
    <message id="systemInfo.cpu">
        <translation>CPU</translation>
    </message>
    <message id="systemInfo.memory">
        <translation>RAM</translation>
    </message>
    <message id="systemInfo.disk">
        <translation>Disk</translation>
    </message>
    <message id="systemInfo.free %@">
        <translation>%@ free</translation>
    </message>
    <message id="network.download %@">
        <translation>download %@</translation>
    </message>
    <message id="network.upload %@">
        <translation>upload %@</translation>
    </message>
    <message id="timer.startFor %@">
        <translation>Start a timer of %@</translation>
    </message>
    <message id="timer.customButton">
        <translation>Other duration…</translation>
    </message>
    <message id="timer.stop">
        <translation>Stop the timer</translation>
    </message>
    <message id="timer.customTitle">
        <translation>New timer</translation>
    </message>
    <message id="timer.unitHours">
        <translation>hours</translation>
    </message>
    <message id="timer.unitMinutes">
        <translation>minutes</translation>
    </message>
    <message id="timer.startButton">
        <translation>Start</translation>
    </message>
    <message id="timer.cancel">
        <translation>Cancel</translation>
    </message>
    <message id="timer.customSubtitle">
        <translation>How long should it run?</translation>
    </message>
    <message id="timer.toolTip %@">
        <translation>Orvelle: timer, %@ left</translation>
    </message>
    <message id="snapshot.column.reason">
        <translation>Taken before</translation>
    </message>
    <message id="snapshot.takenBefore %@">
        <translation>Taken before: %@</translation>
    </message>
    <message id="quickAdd.offer %@">
        <translation>From the clipboard: %@</translation>
    </message>
    <message id="quickAdd.offerKey">
        <translation>Enter</translation>
    </message>
    <message id="quickAdd.sameAddress %@">
        <translation>Already in your links: %@. You can still add it.</translation>
    </message>
    <message id="quickAdd.missingFile">
        <translation>There is nothing at this path. The link will be marked as broken.</translation>
    </message>
    <message id="quickAdd.dropHint">
        <translation>Drop a file, a folder or an address here</translation>
    </message>
    <message id="import.settingsTaken">
        <translation>Settings were taken over.</translation>
    </message>
    <message id="systemInfo.modeTerminal">
        <translation>Terminal</translation>
    </message>
    <message id="systemInfo.modeDiscreet">
        <translation>Discreet</translation>
    </message>
    <message id="network.modeGraph">
        <translation>Graph</translation>
    </message>
    <message id="network.modeDiscreet">
        <translation>Discreet</translation>
    </message>
    <message id="timer.presetsLabel">
        <translation>Durations:</translation>
    </message>
    <message id="timer.customMessage">
        <translation>Start now:</translation>
    </message>
    <message id="timer.customPlaceholder">
        <translation>minutes</translation>
    </message>
    <message id="timer.startCustom">
        <translation>Start</translation>
    </message>
    <message id="timer.minutesSuffix">
        <translation> min</translation>
    </message>
    <message id="snapshot.restored %@">
        <translation>Snapshot restored: %@</translation>
    </message>
    <message id="error.importUndecodable %@">
        <translation>The document cannot be read by Orvelle (%@).</translation>
    </message>
    <message id="error.importTooLarge">
        <translation>The document is larger than 64 MiB.</translation>
    </message>
    <message id="error.importTooManyItems">
        <translation>The document holds more than 200,000 links.</translation>
    </message>
    <message id="error.importTooDeep">
        <translation>The document is nested deeper than 512 levels.</translation>
    </message>
    <message id="import.checksumError">
        <translation>The document’s checksum is wrong: it was damaged or changed by hand.</translation>
    </message>
    <message id="import.howTo">
        <translation>How should its content be taken in?</translation>
    </message>
    <message id="import.modeDescription">
        <translation>A copy of the present links is kept first, and the import can be undone.</translation>
    </message>
    <message id="import.mergeDesc">
        <translation>Adds what is not there yet to the end of the links.</translation>
    </message>
    <message id="import.replaceAllDesc">
        <translation>The links in the file take the place of all present ones.</translation>
    </message>
    <message id="import.itemsInFile %lld">
        <translation>Items: %lld</translation>
    </message>
    <message id="import.writtenOn %@">
        <translation>Written: %@</translation>
    </message>
    <message id="import.writtenBy %@">
        <translation>On: %@</translation>
    </message>
    <message id="import.versionWarning">
        <translation>This document was written by a newer version of Orvelle. What this version does not know is left out.</translation>
    </message>
    <message id="import.confirm">
        <translation>Import</translation>
    </message>
    <message id="import.bookmarksTitle">
        <translation>Import bookmarks</translation>
    </message>
    <message id="import.linkFolderTitle">
        <translation>Import a folder of link files</translation>
    </message>
    <message id="import.linkFiles">
        <translation>Links</translation>
    </message>
    <message id="import.working">
        <translation>Importing…</translation>
    </message>
    <message id="import.finished">
        <translation>Import finished</translation>
    </message>
    <message id="import.nothingNew">
        <translation>There was nothing new to import</translation>
    </message>
    <message id="import.undo">
        <translation>Undo import</translation>
    </message>
    <message id="import.undoRefused">
        <translation>The links have changed since the import. The state before it is among the kept copies in the settings.</translation>
    </message>
    <message id="import.imported">
        <translation>Items imported:</translation>
    </message>
    <message id="import.added">
        <translation>Items added:</translation>
    </message>
    <message id="import.duplicatesDetected">
        <translation>Already there, not added again:</translation>
    </message>
    <message id="import.dropped">
        <translation>Incomplete or too deeply nested, left out:</translation>
    </message>
    <message id="import.quickLaunchImported">
        <translation>The quick launch apps were taken over.</translation>
    </message>
    <message id="import.foldedFolders">
        <translation>Folders merged into their parent:</translation>
    </message>
    <message id="import.leftOutAddresses">
        <translation>Unsafe or browser-only addresses left out:</translation>
    </message>
    <message id="import.unreadableFiles">
        <translation>Files and folders that could not be read:</translation>
    </message>
    <message id="import.otherFiles">
        <translation>Other files, not imported:</translation>
    </message>
    <message id="export.title">
        <translation>Export</translation>
    </message>
    <message id="export.bookmarksTitle">
        <translation>Export bookmarks</translation>
    </message>
    <message id="export.working">
        <translation>Exporting…</translation>
    </message>
    <message id="export.finished %@">
        <translation>“%@” was saved</translation>
    </message>
    <message id="export.items">
        <translation>Items exported:</translation>
    </message>
    <message id="export.notesLeftOut">
        <translation>Notes left out:</translation>
    </message>
    <message id="error.export %@">
        <translation>The file could not be saved: %@</translation>
    </message>
    <message id="exchange.documents">
        <translation>Orvelle documents</translation>
    </message>
    <message id="exchange.bookmarkFiles">
        <translation>Bookmark files</translation>
    </message>
    <message id="exchange.allFiles">
        <translation>All files</translation>
    </message>
    <message id="settings.reveal">
        <translation>Show in the file manager</translation>
    </message>
    <message id="shortcut.enabled">
        <translation>Open the menu from anywhere with</translation>
    </message>
    <message id="shortcut.recording">
        <translation>Press a combination…</translation>
    </message>
    <message id="shortcut.recordHint">
        <translation>Click, then press the new combination; Esc keeps the present one</translation>
    </message>
    <message id="shortcut.accessible %@">
        <translation>Shortcut: %@</translation>
    </message>
    <message id="shortcut.reset %@">
        <translation>Back to %@</translation>
    </message>
    <message id="shortcut.conflictWarning">
        <translation>Many programs use this combination themselves; it will no longer reach them.</translation>
    </message>
    <message id="shortcut.heldByAnother">
        <translation>Another program already holds this combination. Choose another one.</translation>
    </message>
    <message id="shortcut.noSuchKey">
        <translation>This keyboard has no such key. Choose another combination.</translation>
    </message>
    <message id="shortcut.unavailable">
        <translation>On this desktop, programs cannot hold shortcuts. Bind the command “orvelle toggle” in the desktop’s keyboard settings.</translation>
    </message>
    <message id="shortcut.refused">
        <translation>The stored combination cannot be used. Choose another one.</translation>
    </message>
    <message id="quicklaunch.style">
        <translation>Style:</translation>
    </message>
    <message id="quicklaunch.style.souffle">
        <translation>Breath</translation>
    </message>
    <message id="quicklaunch.style.dock">
        <translation>Dock</translation>
    </message>
    <message id="quicklaunch.style.neon">
        <translation>Neon</translation>
    </message>
    <message id="quicklaunch.style.encre">
        <translation>Ink</translation>
    </message>
    <message id="quicklaunch.empty">
        <translation>Empty</translation>
    </message>
    <message id="quicklaunch.remove">
        <translation>Remove</translation>
    </message>
    <message id="quicklaunch.choose">
        <translation>Choose…</translation>
    </message>
    <message id="quicklaunch.noApps">
        <translation>No application chosen yet</translation>
    </message>
    <message id="quicklaunch.gone">
        <translation>This application is no longer installed.</translation>
    </message>
    <message id="quicklaunch.slots">
        <translation>Applications</translation>
    </message>
    <message id="quicklaunch.slotsHint">
        <translation>Drag to rearrange. Up to four applications show in the menu.</translation>
    </message>
    <message id="quicklaunch.chooserTitle">
        <translation>Choose an application</translation>
    </message>
    <message id="quicklaunch.search">
        <translation>Search applications</translation>
    </message>
    <message id="quicklaunch.fromFile">
        <translation>From a file…</translation>
    </message>
    <message id="quicklaunch.fileFilter">
        <translation>Desktop entries (*.desktop)</translation>
    </message>
    <message id="quicklaunch.notUsable %@">
        <translation>“%@” is no application that can be started. A file from outside the applications folders must be marked as executable.</translation>
    </message>
    <message id="clipboard.empty">
        <translation>Nothing copied yet</translation>
    </message>
    <message id="clipboard.typeRTF">
        <translation>Formatted text</translation>
    </message>
    <message id="clipboard.typeImage">
        <translation>Image</translation>
    </message>
    <message id="clipboard.typeFile">
        <translation>File</translation>
    </message>
    <message id="clipboard.typeFiles ">
        <translation>Files: </translation>
    </message>
    <message id="clipboard.typeOther">
        <translation>Other content</translation>
    </message>
    <message id="clipboard.pause">
        <translation>Pause</translation>
    </message>
    <message id="clipboard.resume">
        <translation>Resume</translation>
    </message>
    <message id="clipboard.paused">
        <translation>Paused</translation>
    </message>
    <message id="clipboard.clear">
        <translation>Clear history</translation>
    </message>
    <message id="clipboard.forget">
        <translation>Forget this entry</translation>
    </message>
    <message id="clipboard.plainText">
        <translation>Paste as plain text</translation>
    </message>
    <message id="clipboard.plainTextHint">
        <translation>With Shift, as plain text</translation>
    </message>
    <message id="weather.style">
        <translation>Style:</translation>
    </message>
    <message id="weather.style.aurora">
        <translation>Aurora</translation>
    </message>
    <message id="weather.style.brume">
        <translation>Mist</translation>
    </message>
    <message id="weather.style.horizon">
        <translation>Horizon</translation>
    </message>
    <message id="weather.style.cristal">
        <translation>Crystal</translation>
    </message>
    <message id="weather.style.zephyr">
        <translation>Zephyr</translation>
    </message>
    <message id="weather.condition.clear">
        <translation>Clear</translation>
    </message>
    <message id="weather.condition.mainlyClear">
        <translation>Mainly clear</translation>
    </message>
    <message id="weather.condition.partlyCloudy">
        <translation>Partly cloudy</translation>
    </message>
    <message id="weather.condition.overcast">
        <translation>Overcast</translation>
    </message>
    <message id="weather.condition.fog">
        <translation>Fog</translation>
    </message>
    <message id="weather.condition.drizzle">
        <translation>Drizzle</translation>
    </message>
    <message id="weather.condition.freezingDrizzle">
        <translation>Freezing drizzle</translation>
    </message>
    <message id="weather.condition.rain">
        <translation>Rain</translation>
    </message>
    <message id="weather.condition.freezingRain">
        <translation>Freezing rain</translation>
    </message>
    <message id="weather.condition.snow">
        <translation>Snow</translation>
    </message>
    <message id="weather.condition.showers">
        <translation>Showers</translation>
    </message>
    <message id="weather.condition.snowShowers">
        <translation>Snow showers</translation>
    </message>
    <message id="weather.condition.thunderstorm">
        <translation>Thunderstorm</translation>
    </message>
    <message id="weather.condition.cloudy">
        <translation>Cloudy</translation>
    </message>
    <message id="calendar.tomorrow">
        <translation>Tomorrow</translation>
    </message>
    <message id="calendar.allDay">
        <translation>all day</translation>
    </message>
    <message id="weather.modeAutomatic">
        <translation>Where I am</translation>
    </message>
    <message id="weather.modeManual">
        <translation>City</translation>
    </message>
    <message id="weather.cityLabel">
        <translation>City:</translation>
    </message>
    <message id="weather.cityPlaceholder">
        <translation>City, or city and country</translation>
    </message>
    <message id="weather.search">
        <translation>Search</translation>
    </message>
    <message id="weather.searching">
        <translation>Searching…</translation>
    </message>
    <message id="weather.cityFound %@">
        <translation>Found: %@</translation>
    </message>
    <message id="weather.cityNotFound">
        <translation>No such city was found.</translation>
    </message>
    <message id="weather.cityFailed">
        <translation>The search service did not answer.</translation>
    </message>
    <message id="weather.locationPending">
        <translation>Waiting for the weather…</translation>
    </message>
    <message id="weather.locationDenied">
        <translation>Your position is not available</translation>
    </message>
    <message id="weather.noCity">
        <translation>Choose a city in the settings</translation>
    </message>
    <message id="weather.unavailable">
        <translation>The weather is not available</translation>
    </message>
    <message id="weather.minutesAgo %lld">
        <translation>%lld min ago</translation>
    </message>
    <message id="weather.hoursAgo %lld">
        <translation>%lld h ago</translation>
    </message>
    <message id="weather.daysAgo %lld">
        <translation>%lld d ago</translation>
    </message>
    <message id="calendar.noEvent">
        <translation>No upcoming event</translation>
    </message>
    <message id="calendar.accessRequired">
        <translation>No calendar to read yet</translation>
    </message>
    <message id="calendar.join">
        <translation>Join</translation>
    </message>
    <message id="calendar.joinEvent %@">
        <translation>Join “%@”</translation>
    </message>
    <message id="calendar.declined">
        <translation>Declined</translation>
    </message>
    <message id="calendar.iconColor">
        <translation>Icon colour:</translation>
    </message>
    <message id="calendar.maxEvents">
        <translation>Events shown:</translation>
    </message>
    <message id="calendar.scope">
        <translation>Which events:</translation>
    </message>
    <message id="calendar.scope.today">
        <translation>Today</translation>
    </message>
    <message id="calendar.scope.day">
        <translation>The next day with events</translation>
    </message>
    <message id="calendar.scope.all">
        <translation>The coming seven days</translation>
    </message>
    <message id="calendar.hideDeclined">
        <translation>Hide declined invitations</translation>
    </message>
    <message id="calendar.folders">
        <translation>Calendar folders:</translation>
    </message>
    <message id="calendar.addFolder">
        <translation>Add…</translation>
    </message>
    <message id="calendar.removeFolder">
        <translation>Remove</translation>
    </message>
    <message id="calendar.chooseFolder">
        <translation>Choose a folder with .ics files.</translation>
    </message>
    <message id="widget.iconColor">
        <translation>Icon colour:</translation>
    </message>
    <message id="clipboard.privacyHint">
        <translation>The last ten things are kept until Orvelle ends. What a password manager marks as secret is never read.</translation>
    </message>
    <message id="cloudSync.refused.noFolder">
        <translation>Choose a folder first.</translation>
    </message>
    <message id="cloudSync.refused.notAFolder">
        <translation>There is no such folder now. Is its disk or share connected?</translation>
    </message>
    <message id="cloudSync.refused.noServer">
        <translation>This is not the address of a server. It looks like https://cloud.example.org/remote.php/dav/files/ada/.</translation>
    </message>
    <message id="cloudSync.refused.insecure">
        <translation>Orvelle does not send your links and your password unencrypted. Use an address that begins with https://.</translation>
    </message>
    <message id="cloudSync.refused.secretInAddress">
        <translation>Leave the name and the password out of the address; they have their own fields.</translation>
    </message>
    <message id="cloudSync.refused.noUser">
        <translation>Enter the name you use on this server.</translation>
    </message>
    <message id="sync.summary.updates %lld">
        <translation>Updated items: %lld</translation>
    </message>
    <message id="sync.summary.adds %lld">
        <translation>New items: %lld</translation>
    </message>
    <message id="sync.summary.removes %lld">
        <translation>Items to remove: %lld</translation>
    </message>
    <message id="sync.summary.duplicates %lld">
        <translation>Groups of duplicates: %lld</translation>
    </message>
    <message id="sync.summary.noChanges">
        <translation>Nothing would change: both sides hold the same.</translation>
    </message>
    <message id="sync.confirmTitle">
        <translation>Synchronise with this document?</translation>
    </message>
    <message id="sync.apply">
        <translation>Synchronise</translation>
    </message>
    <message id="sync.showChanges">
        <translation>Show changes…</translation>
    </message>
    <message id="sync.complete">
        <translation>Synchronised</translation>
    </message>
    <message id="sync.result.updated %lld">
        <translation>Updated: %lld</translation>
    </message>
    <message id="sync.result.added %lld">
        <translation>Added: %lld</translation>
    </message>
    <message id="sync.result.removed %lld">
        <translation>Removed: %lld</translation>
    </message>
    <message id="sync.result.duplicates %lld">
        <translation>Duplicates resolved: %lld</translation>
    </message>
    <message id="sync.result.noChanges">
        <translation>Nothing changed.</translation>
    </message>
    <message id="sync.result.duplicatesResolved">
        <translation>Duplicates resolved:</translation>
    </message>
    <message id="sync.removed %lld">
        <translation>Removed: %lld</translation>
    </message>
    <message id="sync.preview.title">
        <translation>What would change</translation>
    </message>
    <message id="sync.preview.updated">
        <translation>Updated</translation>
    </message>
    <message id="sync.preview.added">
        <translation>New</translation>
    </message>
    <message id="sync.preview.removed">
        <translation>Removed</translation>
    </message>
    <message id="sync.preview.duplicates">
        <translation>Duplicates</translation>
    </message>
    <message id="sync.preview.duplicatesDetail">
        <translation>These items were found more than once. Of each, the ticked copy is kept.</translation>
    </message>
    <message id="sync.preview.duplicateInstances">
        <translation>Copies:</translation>
    </message>
    <message id="sync.preview.kept">
        <translation>Kept</translation>
    </message>
    <message id="sync.preview.dropped">
        <translation>Dropped</translation>
    </message>
    <message id="sync.preview.noChangesDetail">
        <translation>The links here and in the document are the same.</translation>
    </message>
    <message id="sync.preview.apply">
        <translation>Apply</translation>
    </message>
    <message id="sync.details.pathChanged">
        <translation>Address</translation>
    </message>
    <message id="sync.details.colorChanged">
        <translation>Colour</translation>
    </message>
    <message id="sync.details.iconChanged">
        <translation>Icon</translation>
    </message>
    <message id="sync.details.otherChanged">
        <translation>Name or content</translation>
    </message>
    <message id="sync.details.newerHere">
        <translation>newer here</translation>
    </message>
    <message id="cloudSync.heldBack.keep">
        <translation>Keep what is here</translation>
    </message>
    <message id="cloudSync.heldBack.accept">
        <translation>Take it in</translation>
    </message>
    <message id="update.title">
        <translation>Updates</translation>
    </message>
    <message id="update.autoCheck">
        <translation>Look for updates once a day</translation>
    </message>
    <message id="update.checkNow">
        <translation>Check now</translation>
    </message>
    <message id="update.checking">
        <translation>Looking for a newer version…</translation>
    </message>
    <message id="update.state.available %@">
        <translation>Version %@ is available.</translation>
    </message>
    <message id="update.state.never">
        <translation>Not checked yet.</translation>
    </message>
    <message id="update.state.noHost">
        <translation>This copy of Orvelle has no server to ask. It is updated by whoever provided it.</translation>
    </message>
    <message id="update.sent %@">
        <translation>%@ is asked for the number of the newest version. Nothing else is sent, and nothing is installed.</translation>
    </message>
    <message id="update.available.title">
        <translation>A newer version is available</translation>
    </message>
    <message id="update.available.message %@">
        <translation>Orvelle %@ can be downloaded from its page.</translation>
    </message>
    <message id="update.download">
        <translation>Open download page</translation>
    </message>
    <message id="update.later">
        <translation>Later</translation>
    </message>
    <message id="update.skip">
        <translation>Skip this version</translation>
    </message>
    <message id="update.upToDate.title">
        <translation>Orvelle is up to date</translation>
    </message>
    <message id="update.upToDate.message %@">
        <translation>Version %@ is the newest one.</translation>
    </message>
    <message id="update.error.title">
        <translation>The check for updates failed</translation>
    </message>
    <message id="update.error.timedOut">
        <translation>The server did not answer in time.</translation>
    </message>
    <message id="update.error.network">
        <translation>The server could not be reached.</translation>
    </message>
    <message id="update.error.status %@">
        <translation>The server answered with error %@.</translation>
    </message>
    <message id="update.error.manifest">
        <translation>What the server answered is not a description of a version.</translation>
    </message>
    <message id="update.error.noHost">
        <translation>There is no server to ask.</translation>
    </message>
    <message id="tip.buy">
        <translation>Leave a tip</translation>
    </message>
    <message id="tip.later">
        <translation>Not now</translation>
    </message>
    <message id="tip.neverAgain">
        <translation>Don’t ask again</translation>
    </message>
    <message id="settings.launchAtLogin">
        <translation>Start when I log in</translation>
    </message>
    <message id="welcome.privacy">
        <translation>Your privacy</translation>
    </message>
    <message id="welcome.privacyNothingElse">
        <translation>Nothing else leaves this computer until you turn it on.</translation>
    </message>
    <message id="import.syncDesc">
        <translation>Shows what differs and takes over what you choose, the newer side by default.</translation>
    </message>
    <message id="cloudSync.sectionTitle">
        <translation>Synchronisation</translation>
    </message>
    <message id="cloudSync.sectionSubtitle">
        <translation>Keeps the links and settings of your computers in step, through a folder or a server of your choice. Nothing is sent anywhere else.</translation>
    </message>
    <message id="cloudSync.autoSync">
        <translation>Synchronise automatically</translation>
    </message>
    <message id="cloudSync.syncNow">
        <translation>Sync now</translation>
    </message>
    <message id="cloudSync.load">
        <translation>Load…</translation>
    </message>
    <message id="cloudSync.configure">
        <translation>Set up</translation>
    </message>
    <message id="cloudSync.stop">
        <translation>Stop synchronising</translation>
    </message>
    <message id="cloudSync.test">
        <translation>Test</translation>
    </message>
    <message id="cloudSync.testGood">
        <translation>This place works: it can be read and written.</translation>
    </message>
    <message id="cloudSync.place">
        <translation>Place:</translation>
    </message>
    <message id="cloudSync.place.none">
        <translation>None</translation>
    </message>
    <message id="cloudSync.place.folder">
        <translation>Folder kept in step by another program</translation>
    </message>
    <message id="cloudSync.place.webdav">
        <translation>WebDAV server</translation>
    </message>
    <message id="cloudSync.folder">
        <translation>Folder:</translation>
    </message>
    <message id="cloudSync.folderHint">
        <translation>A folder of your cloud or of a share</translation>
    </message>
    <message id="cloudSync.chooseFolder">
        <translation>Choose…</translation>
    </message>
    <message id="cloudSync.chooseFolderTitle">
        <translation>Folder to share between your computers</translation>
    </message>
    <message id="cloudSync.chooseFolderConfirm">
        <translation>Choose</translation>
    </message>
    <message id="cloudSync.server">
        <translation>Address:</translation>
    </message>
    <message id="cloudSync.user">
        <translation>User name:</translation>
    </message>
    <message id="cloudSync.password">
        <translation>Password:</translation>
    </message>
    <message id="cloudSync.passwordKept">
        <translation>Kept in your keyring</translation>
    </message>
    <message id="cloudSync.icloudUnavailable">
        <translation>The place cannot be reached.</translation>
    </message>
    <message id="cloudSync.state.noPlace">
        <translation>Choose a place that all your computers can reach.</translation>
    </message>
    <message id="cloudSync.state.off">
        <translation>Switched off.</translation>
    </message>
    <message id="cloudSync.state.starting">
        <translation>Looking at the shared document…</translation>
    </message>
    <message id="cloudSync.state.current">
        <translation>Up to date.</translation>
    </message>
    <message id="cloudSync.state.waiting">
        <translation>Changes made here wait to be sent.</translation>
    </message>
    <message id="cloudSync.state.working">
        <translation>Synchronising…</translation>
    </message>
    <message id="cloudSync.state.heldBack">
        <translation>Waiting for your decision.</translation>
    </message>
    <message id="cloudSync.state.needsPassphrase">
        <translation>The shared document is encrypted.</translation>
    </message>
    <message id="cloudSync.state.failed">
        <translation>Not synchronised.</translation>
    </message>
    <message id="cloudSync.retryAt %@">
        <translation>Next try: %@.</translation>
    </message>
    <message id="cloudSync.lastSync %@">
        <translation>Last synchronised: %@</translation>
    </message>
    <message id="cloudSync.lastDevice %@">
        <translation>last change from %@</translation>
    </message>
    <message id="cloudSync.guard">
        <translation>Ask before a change from another computer removes many items</translation>
    </message>
    <message id="cloudSync.guardHint">
        <translation>More than a fifth of the items, or more than 1,000. Until you decide, nothing changes here and nothing is sent.</translation>
    </message>
    <message id="cloudSync.heldBack.someDevice">
        <translation>Another computer</translation>
    </message>
    <message id="cloudSync.heldBack.who %@">
        <translation>A change by %@ was held back.</translation>
    </message>
    <message id="cloudSync.heldBack.removed %lld">
        <translation>It would remove %lld items</translation>
    </message>
    <message id="cloudSync.heldBack.of %lld">
        <translation>of %lld.</translation>
    </message>
    <message id="cloudSync.heldBack.nothingChanged">
        <translation>Nothing was changed here.</translation>
    </message>
    <message id="cloudSync.heldBack.preview">
        <translation>Show changes…</translation>
    </message>
    <message id="cloudSync.encryptedOff">
        <translation>The document is not encrypted: who can read the place can read your links.</translation>
    </message>
    <message id="cloudSync.encryptedOn">
        <translation>The document is encrypted with your passphrase.</translation>
    </message>
    <message id="cloudSync.encryptMore">
        <translation>Encrypt…</translation>
    </message>
    <message id="cloudSync.encrypt">
        <translation>Encrypt</translation>
    </message>
    <message id="cloudSync.decryptMore">
        <translation>Stop encrypting…</translation>
    </message>
    <message id="cloudSync.decryptTitle">
        <translation>Store the document unencrypted?</translation>
    </message>
    <message id="cloudSync.decryptMessage">
        <translation>Who can read the place can then read your links. The passphrase is removed from your keyring.</translation>
    </message>
    <message id="cloudSync.decryptAction">
        <translation>Stop encrypting</translation>
    </message>
    <message id="cloudSync.decrypted">
        <translation>The document is no longer encrypted.</translation>
    </message>
    <message id="cloudSync.passphraseTitle">
        <translation>Passphrase</translation>
    </message>
    <message id="cloudSync.passphraseChoose">
        <translation>The shared document will be encrypted before it leaves this computer. Your other computers ask for the same passphrase.</translation>
    </message>
    <message id="cloudSync.passphraseEnter">
        <translation>Enter the passphrase that you chose on another computer. It is kept in your keyring.</translation>
    </message>
    <message id="cloudSync.passphrase">
        <translation>Passphrase:</translation>
    </message>
    <message id="cloudSync.passphraseAgain">
        <translation>The same once more:</translation>
    </message>
    <message id="cloudSync.passphraseWarning">
        <translation>A lost passphrase cannot be recovered by anybody. Write it down and keep it in a safe place.</translation>
    </message>
    <message id="cloudSync.passphraseShort %lld">
        <translation>At least %lld characters.</translation>
    </message>
    <message id="cloudSync.passphraseDiffers">
        <translation>The two are not the same yet.</translation>
    </message>
    <message id="cloudSync.passphraseUse">
        <translation>Use</translation>
    </message>
    <message id="cloudSync.passphraseStored">
        <translation>The passphrase is in your keyring.</translation>
    </message>
    <message id="cloudSync.passphraseNeeded">
        <translation>The shared document is encrypted, and this computer does not know its passphrase. Nothing is changed until you enter it.</translation>
    </message>
    <message id="cloudSync.passphraseEnterMore">
        <translation>Enter passphrase…</translation>
    </message>
    <message id="cloudSync.passphraseChangeMore">
        <translation>Change passphrase…</translation>
    </message>
    <message id="cloudSync.configureChoice.title">
        <translation>There is a shared document already</translation>
    </message>
    <message id="cloudSync.configureChoice.message">
        <translation>Use it to replace the links here by those of your other computers. Or begin anew: the links here then replace it, on your other computers too. What is replaced is kept under Snapshots.</translation>
    </message>
    <message id="cloudSync.configureChoice.useExisting">
        <translation>Use the document</translation>
    </message>
    <message id="cloudSync.configureChoice.createNew">
        <translation>Begin anew</translation>
    </message>
    <message id="cloudSync.resultTitle">
        <translation>Synchronisation</translation>
    </message>
    <message id="cloudSync.saveSuccess">
        <translation>Synchronised.</translation>
    </message>
    <message id="error.cloudSyncSave %@">
        <translation>The links could not be synchronised. %@</translation>
    </message>
    <message id="error.cloudSyncLoad %@">
        <translation>The shared document could not be loaded. %@</translation>
    </message>
    <message id="cloudSync.loadConfirmTitle">
        <translation>Replace the links here?</translation>
    </message>
    <message id="cloudSync.loadConfirmMessage">
        <translation>The links and settings here are replaced by those of the shared document. A copy of the present links is kept under Snapshots.</translation>
    </message>
    <message id="cloudSync.loadConfirmAction">
        <translation>Replace</translation>
    </message>
    <message id="cloudSync.loadSuccess %@">
        <translation>The shared document was loaded. Items: %@</translation>
    </message>
    <message id="menu.syncHeldBack">
        <translation>Synchronisation: a large change needs your decision</translation>
    </message>
    <message id="menu.syncPassphrase">
        <translation>Synchronisation: passphrase needed</translation>
    </message>
    <message id="menu.syncFailed">
        <translation>Synchronisation needs your attention</translation>
    </message>
    <message id="cloudSync.document.empty">
        <translation>The shared file is empty. It was left as it is, and nothing here was changed.</translation>
    </message>
    <message id="cloudSync.document.undecodable">
        <translation>The shared file is damaged or is no Orvelle document. It was left as it is, and nothing here was changed.</translation>
    </message>
    <message id="cloudSync.document.newer">
        <translation>The shared file was written by a newer version of Orvelle. Update Orvelle on this computer to go on.</translation>
    </message>
    <message id="cloudSync.document.tooLarge">
        <translation>The shared file is too large, or its groups are nested too deeply. Nothing was changed.</translation>
    </message>
    <message id="cloudSync.document.needsPassphrase">
        <translation>The shared file is encrypted. Enter its passphrase on this computer.</translation>
    </message>
    <message id="cloudSync.document.wrongPassphrase">
        <translation>The passphrase does not open the shared file.</translation>
    </message>
    <message id="cloudSync.failure.unavailable">
        <translation>The place of the shared file cannot be reached.</translation>
    </message>
    <message id="cloudSync.failure.missing">
        <translation>There is no shared file in this place.</translation>
    </message>
    <message id="cloudSync.failure.noData">
        <translation>The shared file could not be read.</translation>
    </message>
    <message id="cloudSync.failure.conflict">
        <translation>Other computers keep changing the shared file. Your changes are kept and tried again.</translation>
    </message>
    <message id="cloudSync.failure.locked">
        <translation>Another computer is holding the shared file. Your changes are kept and tried again.</translation>
    </message>
    <message id="cloudSync.failure.unsafe">
        <translation>This server cannot share the file safely: it would let one computer overwrite another’s changes.</translation>
    </message>
    <message id="cloudSync.failure.authentication">
        <translation>Access was refused. Check the user name and the password.</translation>
    </message>
    <message id="cloudSync.failure.noSecretStore">
        <translation>The keyring cannot be used. Unlock it, or start a keyring service.</translation>
    </message>
    <message id="cloudSync.failure.noSpace">
        <translation>There is no space left where the shared file is.</translation>
    </message>
    <message id="cloudSync.failure.notADocument">
        <translation>Something else came instead of the shared file, perhaps the log-in page of a network.</translation>
    </message>
    <message id="cloudSync.failure.tls">
        <translation>The server’s certificate cannot be trusted.</translation>
    </message>
    <message id="cloudSync.failure.timedOut">
        <translation>The place of the shared file took too long to answer.</translation>
    </message>
    <message id="cloudSync.failure.tooLarge">
        <translation>The shared file would be too large.</translation>
    </message>
    <message id="cloudSync.failure.io">
        <translation>The shared file could not be read or written.</translation>
    </message>
    <message id="cloudSync.failure.heldBack">
        <translation>A change from another computer would remove many items. Decide about it first.</translation>
    </message>
    <message id="cloudSync.failure.noSnapshot">
        <translation>No snapshot could be kept, so nothing was changed.</translation>
    </message>
    <message id="cloudSync.passphraseLabel">
        <translation>Orvelle: passphrase of the shared file</translation>
    </message>
    <message id="cloudSync.keyringLabel">
        <translation>Orvelle: password of the synchronisation server</translation>
    </message>
    <message id="cloudSync.placeNotStored">
        <translation>The place could not be stored in the settings.</translation>
    </message>
    <message id="calendar.untitled">
        <translation>Untitled event</translation>
    </message>
    <message id="calendar.noFolder">
        <translation>None. Add one that holds .ics files.</translation>
    </message>
    <message id="calendar.foldersHint">
        <translation>Folders of .ics files, with their subfolders, beside the calendars that the desktop keeps.</translation>
    </message>
    <message id="update.state.published %@">
        <translation>Published %@.</translation>
    </message>
    <message id="update.state.checked %@">
        <translation>Last checked %@.</translation>
    </message>
    <message id="tip.title">
        <translation>Is Orvelle of use to you?</translation>
    </message>
    <message id="tip.message">
        <translation>You have been using it for a month’s worth of days. If you like, leave a tip: it opens a page in your browser.</translation>
    </message>
    <message id="openProgram.title %@">
        <translation>“%@” leads to a program</translation>
    </message>
    <message id="openProgram.message">
        <translation>This link came with an import or from another device. What it opens would run with all your rights. Open it only if you know where it comes from.</translation>
    </message>
    <message id="openProgram.executable %@">
        <translation>%@ is an executable file.</translation>
    </message>
    <message id="openProgram.script %@">
        <translation>%@ is a script.</translation>
    </message>
    <message id="openProgram.desktopEntry %@">
        <translation>%@ starts an application (desktop entry).</translation>
    </message>
    <message id="openProgram.programFile %@">
        <translation>%@ is of a kind that runs when it is opened.</translation>
    </message>
    <message id="openProgram.onShare %@">
        <translation>%@ is a program on a server or in another place.</translation>
    </message>
    <message id="openProgram.open">
        <translation>Open</translation>
    </message>
    <message id="openProgram.askFirst">
        <translation>The link came with an import or from another device; choose it in the menu of Orvelle, which asks first.</translation>
    </message>
    <message id="about.manual">
        <translation>Manual</translation>
    </message>
    <message id="about.manualPage">
        <translation>manual.html</translation>
    </message>
    <message id="shortcut.undecided">
        <translation>The desktop asks whether Orvelle may hold this combination.</translation>
    </message>
    <message id="shortcut.portalDescription">
        <translation>Open the Orvelle menu</translation>
    </message>
    <message id="shortcut.denied">
        <translation>The desktop or you refused the shortcut. Allow it in the desktop’s settings, or bind the command “orvelle toggle” to a key there.</translation>
    </message>
    <message id="shortcut.desktopTrigger %@">
        <translation>The desktop has set: %@</translation>
    </message>
    <message id="clipboard.forbidden">
        <translation>The desktop does not show what is copied</translation>
    </message>
    <message id="clipboard.forbiddenHint">
        <translation>This desktop does not let programs in the background see what is copied, so the history stays empty.</translation>
    </message>
    <message id="settings.splitter">
        <translation>Width of the list</translation>
    </message>
    <message id="note.colorForNew">
        <translation>Use for new notes</translation>
    </message>
    <message id="quit.unsavedTitle">
        <translation>Your latest changes could not be saved</translation>
    </message>
    <message id="quit.unsavedMessage">
        <translation>If Orvelle quits now, they are lost. Make room on the disk, or make the settings writable, and quit again.</translation>
    </message>
    <message id="quit.unsavedStay">
        <translation>Keep running</translation>
    </message>
    <message id="quit.unsavedQuit">
        <translation>Quit and lose them</translation>
    </message>
    <message id="settings.launchAtLoginFailed">
        <translation>The start at login could not be changed. The file that the desktop keeps for it cannot be written.</translation>
    </message>
    <message id="settings.entryDropped">
        <translation>What you typed cannot be used, so the item is as it was.</translation>
    </message>
    <message id="cloudSync.failure.interrupted">
        <translation>This was interrupted. Please try again.</translation>
    </message>
    <message id="settings.closeLoses">
        <translation>What you typed here cannot be stored. Close the window again to drop it.</translation>
    </message>
    <message id="cloudSync.encryptionNotStored">
        <translation>The choice about encryption could not be stored in the settings. Please try again.</translation>
    </message>
</context>
</TS>
