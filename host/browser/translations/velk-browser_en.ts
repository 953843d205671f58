<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>SearchExplanation</name>
    <message numerus="yes">
        <source>An entry is found when it has what one of these %Ln alternatives asks for:</source>
        <translation>
            <numerusform>An entry is found when it has what this asks for:</numerusform>
            <numerusform>An entry is found when it has what one of these %Ln alternatives asks for:</numerusform>
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
    <name>VelkHost::ManufacturerMenu</name>
    <message numerus="yes">
        <source>%Ln logo(s) did not come.</source>
        <translation>
            <numerusform>%Ln logo did not come.</numerusform>
            <numerusform>%Ln logos did not come.</numerusform>
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
        <source>%Ln filter(s) came: %1.</source>
        <translation>
            <numerusform>%Ln filter came: %1.</numerusform>
            <numerusform>%Ln filters came: %1.</numerusform>
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
