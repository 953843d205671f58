<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>SearchExplanation</name>
    <message numerus="yes">
        <source>An entry is found when it matches one of these %Ln alternatives:</source>
        <translation>
            <numerusform>An entry is found when it matches this:</numerusform>
            <numerusform>An entry is found when it matches one of these %Ln alternatives:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::ImportJob</name>
    <message numerus="yes">
        <source>%Ln libraries were imported.</source>
        <translation>
            <numerusform>%Ln library was imported.</numerusform>
            <numerusform>%Ln libraries were imported.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::LibraryJobs</name>
    <message numerus="yes">
        <source>There were %Ln more problems.</source>
        <translation>
            <numerusform>There was one more problem.</numerusform>
            <numerusform>There were %Ln more problems.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::ManufacturerMenu</name>
    <message numerus="yes">
        <source>%Ln logo(s) could not be fetched.</source>
        <translation>
            <numerusform>%Ln logo could not be fetched.</numerusform>
            <numerusform>%Ln logos could not be fetched.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::SearchPane</name>
    <message numerus="yes">
        <source>%Ln hit(s)</source>
        <translation>
            <numerusform>%Ln hit</numerusform>
            <numerusform>%Ln hits</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::ShownLibraries</name>
    <message numerus="yes">
        <source>%Ln filter(s) added: %1.</source>
        <translation>
            <numerusform>%Ln filter added: %1.</numerusform>
            <numerusform>%Ln filters added: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln filter(s) were here already.</source>
        <translation>
            <numerusform>%Ln filter was here already.</numerusform>
            <numerusform>%Ln filters were here already.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VelkHost::UpdateJob</name>
    <message numerus="yes">
        <source>%Ln libraries were updated.</source>
        <translation>
            <numerusform>%Ln library was updated.</numerusform>
            <numerusform>%Ln libraries were updated.</numerusform>
        </translation>
    </message>
</context>
</TS>
