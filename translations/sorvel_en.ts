<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- English plural forms. Count texts in the code carry the plural as their
     source; this table gives the singular. Loaded on every platform, under the
     platform wording (core/Translations). -->
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Explorer</name>
    <message numerus="yes">
        <source>Folder · %Ln files</source>
        <translation>
            <numerusform>Folder · %Ln file</numerusform>
            <numerusform>Folder · %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files · %1 found</source>
        <translation>
            <numerusform>%Ln file · %1 found</numerusform>
            <numerusform>%Ln files · %1 found</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n unreadable</source>
        <translation>
            <numerusform>%n unreadable</numerusform>
            <numerusform>%n unreadable</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n folders couldn't be read</source>
        <translation>
            <numerusform>%n folder couldn't be read</numerusform>
            <numerusform>%n folders couldn't be read</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n folders inside couldn't be read</source>
        <translation>
            <numerusform>%n folder inside couldn't be read</numerusform>
            <numerusform>%n folders inside couldn't be read</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TopBar</name>
    <message numerus="yes">
        <source>%1 files</source>
        <translation>
            <numerusform>%1 file</numerusform>
            <numerusform>%1 files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TrayModel</name>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Files</name>
    <message numerus="yes">
        <source>%Ln files · %1</source>
        <translation>
            <numerusform>%Ln file · %1</numerusform>
            <numerusform>%Ln files · %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln sets of identical files · %1 in extra copies</source>
        <translation>
            <numerusform>%Ln set of identical files · %1 in extra copies</numerusform>
            <numerusform>%Ln sets of identical files · %1 in extra copies</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln copies · %1 extra</source>
        <translation>
            <numerusform>%Ln copy · %1 extra</numerusform>
            <numerusform>%Ln copies · %1 extra</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files could not be read and were left out</source>
        <translation>
            <numerusform>%n file could not be read and was left out</numerusform>
            <numerusform>%n files could not be read and were left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n files to compare aren't on this computer or couldn't be read</source>
        <translation>
            <numerusform>%n file to compare isn't on this computer or couldn't be read</numerusform>
            <numerusform>%n files to compare aren't on this computer or couldn't be read</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ReviewSheet</name>
    <message numerus="yes">
        <source>%Ln items hold data that can't be rebuilt</source>
        <translation>
            <numerusform>%Ln item holds data that can't be rebuilt</numerusform>
            <numerusform>%Ln items hold data that can't be rebuilt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 · %Ln items</source>
        <translation>
            <numerusform>%1 · %Ln item</numerusform>
            <numerusform>%1 · %Ln items</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more kinds, marked below</source>
        <translation>
            <numerusform>and %Ln more kind, marked below</numerusform>
            <numerusform>and %Ln more kinds, marked below</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>. Open them in Space to clean inside.</source>
        <translation>
            <numerusform>. Open it in Space to clean inside.</numerusform>
            <numerusform>. Open them in Space to clean inside.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln items</source>
        <translation>
            <numerusform>%Ln item</numerusform>
            <numerusform>%Ln items</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln folders</source>
        <translation>
            <numerusform>%Ln folder</numerusform>
            <numerusform>%Ln folders</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files inside</source>
        <translation>
            <numerusform>%Ln file inside</numerusform>
            <numerusform>%Ln files inside</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %Ln more inside, marked below</source>
        <translation>
            <numerusform>and %Ln more inside, marked below</numerusform>
            <numerusform>and %Ln more inside, marked below</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailureSheet</name>
    <message numerus="yes">
        <source>%Ln items stayed behind</source>
        <translation>
            <numerusform>%Ln item stayed behind</numerusform>
            <numerusform>%Ln items stayed behind</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RemovalSession</name>
    <message numerus="yes">
        <source>Sorvelised %1 · %Ln items gone for good</source>
        <translation>
            <numerusform>Sorvelised %1 · %Ln item gone for good</numerusform>
            <numerusform>Sorvelised %1 · %Ln items gone for good</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Sorvelised %1 · %Ln items in the Trash</source>
        <translation>
            <numerusform>Sorvelised %1 · %Ln item in the Trash</numerusform>
            <numerusform>Sorvelised %1 · %Ln items in the Trash</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Put back %Ln items · %1</source>
        <translation>
            <numerusform>Put back %Ln item · %1</numerusform>
            <numerusform>Put back %Ln items · %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln items stayed in the Trash.</source>
        <translation>
            <numerusform>%Ln item stayed in the Trash.</numerusform>
            <numerusform>%Ln items stayed in the Trash.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AppState</name>
    <message numerus="yes">
        <source>Copied %Ln paths</source>
        <translation>
            <numerusform>Copied %Ln path</numerusform>
            <numerusform>Copied %Ln paths</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DeletionSheet</name>
    <message numerus="yes">
        <source>%Ln protected system items will be skipped.</source>
        <translation>
            <numerusform>%Ln protected system item will be skipped.</numerusform>
            <numerusform>%Ln protected system items will be skipped.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DeepClean</name>
    <message numerus="yes">
        <source>%n folders</source>
        <translation>
            <numerusform>%n folder</numerusform>
            <numerusform>%n folders</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Fmt</name>
    <message numerus="yes">
        <source>%n years ago</source>
        <translation>
            <numerusform>%n year ago</numerusform>
            <numerusform>%n years ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n months ago</source>
        <translation>
            <numerusform>%n month ago</numerusform>
            <numerusform>%n months ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n weeks ago</source>
        <translation>
            <numerusform>%n week ago</numerusform>
            <numerusform>%n weeks ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n days ago</source>
        <translation>
            <numerusform>%n day ago</numerusform>
            <numerusform>%n days ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hours ago</source>
        <translation>
            <numerusform>%n hour ago</numerusform>
            <numerusform>%n hours ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes ago</source>
        <translation>
            <numerusform>%n minute ago</numerusform>
            <numerusform>%n minutes ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n seconds ago</source>
        <translation>
            <numerusform>%n second ago</numerusform>
            <numerusform>%n seconds ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n years</source>
        <translation>
            <numerusform>in %n year</numerusform>
            <numerusform>in %n years</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n months</source>
        <translation>
            <numerusform>in %n month</numerusform>
            <numerusform>in %n months</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n weeks</source>
        <translation>
            <numerusform>in %n week</numerusform>
            <numerusform>in %n weeks</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n days</source>
        <translation>
            <numerusform>in %n day</numerusform>
            <numerusform>in %n days</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n hours</source>
        <translation>
            <numerusform>in %n hour</numerusform>
            <numerusform>in %n hours</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n minutes</source>
        <translation>
            <numerusform>in %n minute</numerusform>
            <numerusform>in %n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>in %n seconds</source>
        <translation>
            <numerusform>in %n second</numerusform>
            <numerusform>in %n seconds</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ScanCommand</name>
    <message numerus="yes">
        <source>Scanning: %Ln files, %1</source>
        <translation>
            <numerusform>Scanning: %Ln file, %1</numerusform>
            <numerusform>Scanning: %Ln files, %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TwinsCommand</name>
    <message numerus="yes">
        <source>%n copies</source>
        <translation>
            <numerusform>%n copy</numerusform>
            <numerusform>%n copies</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No identical files among %n files.</source>
        <translation>
            <numerusform>No identical files among %n file.</numerusform>
            <numerusform>No identical files among %n files.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n groups of identical files</source>
        <translation>
            <numerusform>%n group of identical files</numerusform>
            <numerusform>%n groups of identical files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>among %n files; %1 reclaimable.</source>
        <translation>
            <numerusform>among %n file; %1 reclaimable.</numerusform>
            <numerusform>among %n files; %1 reclaimable.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Scanning… %n files, %1</source>
        <translation>
            <numerusform>Scanning… %n file, %1</numerusform>
            <numerusform>Scanning… %n files, %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>warning: %n files could not be read and were left out of the comparison</source>
        <translation>
            <numerusform>warning: %n file could not be read and was left out of the comparison</numerusform>
            <numerusform>warning: %n files could not be read and were left out of the comparison</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n folders or files could not be read.</source>
        <translation>
            <numerusform>%n folder or file could not be read.</numerusform>
            <numerusform>%n folders or files could not be read.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>JunkCommand</name>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 items</source>
        <translation>
            <numerusform>%1 item</numerusform>
            <numerusform>%1 items</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RemoveCommand</name>
    <message numerus="yes">
        <source>Remove %n items for good? This cannot be undone. [y/N] </source>
        <translation>
            <numerusform>Remove %n item for good? This cannot be undone. [y/N] </numerusform>
            <numerusform>Remove %n items for good? This cannot be undone. [y/N] </numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>warning: the journal could not be written, so %n items cannot be put back</source>
        <translation>
            <numerusform>warning: the journal could not be written, so %n item cannot be put back</numerusform>
            <numerusform>warning: the journal could not be written, so %n items cannot be put back</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items, %1 would be freed</source>
        <translation>
            <numerusform>%n item, %1 would be freed</numerusform>
            <numerusform>%n items, %1 would be freed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items, %1 would go to the Trash</source>
        <translation>
            <numerusform>%n item, %1 would go to the Trash</numerusform>
            <numerusform>%n items, %1 would go to the Trash</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items, %1 freed</source>
        <translation>
            <numerusform>%n item, %1 freed</numerusform>
            <numerusform>%n items, %1 freed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items, %1 in the Trash</source>
        <translation>
            <numerusform>%n item, %1 in the Trash</numerusform>
            <numerusform>%n items, %1 in the Trash</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UndoCommand</name>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n items put back, %1</source>
        <translation>
            <numerusform>%n item put back, %1</numerusform>
            <numerusform>%n items put back, %1</numerusform>
        </translation>
    </message>
</context>
</TS>
