<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="de">
<context>
    <name>KelProblemBar</name>
    <message numerus="yes">
        <source>%n Problem(e)</source>
        <translation>
            <numerusform>%n Problem</numerusform>
            <numerusform>%n Probleme</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KelStyleEditor</name>
    <message numerus="yes">
        <source>%n Strecke(n)</source>
        <translation>
            <numerusform>%n Strecke</numerusform>
            <numerusform>%n Strecken</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KelViewerWindow</name>
    <message numerus="yes">
        <source>%n Strecke(n) gelesen.</source>
        <translation>
            <numerusform>%n Strecke gelesen.</numerusform>
            <numerusform>%n Strecken gelesen.</numerusform>
        </translation>
    </message>
</context>
</TS>
