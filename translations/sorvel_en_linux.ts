<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- Linux wording for texts that name Apple software or places. The English
     source texts stay in the code; on Linux this table is loaded at start. -->
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>SafetyGuard</name>
    <message>
        <source>The folder stays; everything inside it is sorvelised (except Apple's own com.apple.* items)</source>
        <translation>The folder stays; everything inside it is sorvelised</translation>
    </message>
    <message>
        <source>macOS and your apps expect this folder to exist. Open it to clean inside</source>
        <translation>Your system and apps expect this folder to exist. Open it to clean inside</translation>
    </message>
    <message>
        <source>Part of macOS, never touched</source>
        <translation>Part of the system, never touched</translation>
    </message>
</context>
<context>
    <name>RiskCatalog</name>
    <message>
        <source>macOS's own cache. It's rebuilt, but some hold state, so it's left out of bulk cleaning</source>
        <translation>The system's own cache. It's rebuilt, but some hold state, so it's left out of bulk cleaning</translation>
    </message>
    <message>
        <source>Rebuilt by your build tools (npm install, xcodebuild, cargo…)</source>
        <translation>Rebuilt by your build tools (npm install, cmake, cargo…)</translation>
    </message>
    <message>
        <source>App caches in ~/Library/Caches (quit the app first)</source>
        <translation>App caches in ~/.cache (quit the app first)</translation>
    </message>
    <message>
        <source>Installers in Downloads (.dmg, .pkg, .iso, .xip)</source>
        <translation>Installers in Downloads (.deb, .rpm, .flatpak, .snap, .iso)</translation>
    </message>
    <message>
        <source>App data: Application Support, Containers, Group Containers, Preferences</source>
        <translation>App data: ~/.config, ~/.local/share, ~/.local/state, Flatpak apps, browser and mail profiles</translation>
    </message>
    <message>
        <source>Virtual machines and Docker data</source>
        <translation>Virtual machines, Docker and Podman data</translation>
    </message>
    <message>
        <source>Passwords, keys and certificates; git repositories; device backups; simulator devices</source>
        <translation>Passwords, keys and certificates; git repositories</translation>
    </message>
    <message>
        <source>macOS system folders (/System, /usr, /bin, /Library/Apple…)</source>
        <translation>System folders (/usr, /bin, /etc, /boot, /var/lib…)</translation>
    </message>
    <message>
        <source>Keychains, ~/.ssh, ~/.gnupg</source>
        <translation>Keyrings, ~/.ssh, ~/.gnupg, ~/.password-store, cloud credentials</translation>
    </message>
    <message>
        <source>Your home folder and its main folders (Documents, Desktop, Downloads, Library…). Open them to clean inside</source>
        <translation>Your home folder and its main folders (Documents, Desktop, Downloads, .config…). Open them to clean inside</translation>
    </message>
</context>
<context>
    <name>DeletionFailure</name>
    <message>
        <source>Protected by macOS</source>
        <translation>Protected by the system</translation>
    </message>
    <message>
        <source>macOS blocks apps from changing these (System Integrity Protection or privacy protection for another app's data). Full Disk Access unlocks some of them; the rest only macOS itself can remove.</source>
        <translation>The system does not let anyone but their owner remove these (locked, immutable or in a shared folder that protects each user's files). Their owner or an administrator can remove them.</translation>
    </message>
    <message>
        <source>These belong to another user or to the system. Remove them in Finder (it will ask for your password) if you're sure.</source>
        <translation>These belong to another user or to the system. Remove them as an administrator (your file manager or sudo will ask for the password) if you're sure.</translation>
    </message>
</context>
<context>
    <name>TopBar</name>
    <message>
        <source>Stop scanning (⌘.)</source>
        <translation>Stop scanning (Ctrl+.)</translation>
    </message>
</context>
<context>
    <name>Explorer</name>
    <message>
        <source>, ⌘-click or Space to deselect</source>
        <translation>, Ctrl-click or Space to deselect</translation>
    </message>
    <message>
        <source>, ⌘-click or Space to select for cleaning</source>
        <translation>, Ctrl-click or Space to select for cleaning</translation>
    </message>
</context>
<context>
    <name>FolderHeader</name>
    <message>
        <source>Up one level (⌘↑)</source>
        <translation>Up one level (Alt+Up)</translation>
    </message>
</context>
<context>
    <name>EntryTile</name>
    <message>
        <source>Show in Finder</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
<context>
    <name>ItemRow</name>
    <message>
        <source>Show in Finder</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
<context>
    <name>ReviewRow</name>
    <message>
        <source>Show in Finder</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
<context>
    <name>JunkContentsList</name>
    <message>
        <source>Show in Finder</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
<context>
    <name>PathActions</name>
    <message>
        <source>Show in Finder</source>
        <translation>Show in File Manager</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>.app, .photoslibrary, frameworks…</source>
        <translation>Folders named .app, .bundle, .framework, .sparsebundle…</translation>
    </message>
    <message>
        <source>Free space in the menu bar</source>
        <translation>Free space in the panel</translation>
    </message>
    <message>
        <source>Shows free space and quick actions in the menu bar.</source>
        <translation>Shows free space and quick actions in the panel's tray.</translation>
    </message>
</context>
</TS>
