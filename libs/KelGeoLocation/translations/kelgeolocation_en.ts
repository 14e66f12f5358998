<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="de">
<context>
    <name>KelGPXBeelineCreator</name>
    <message>
        <source>Fluglinie</source>
        <translation>Beeline</translation>
    </message>
</context>
<context>
    <name>KelGPXTrackListModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
</context>
<context>
    <name>KelGPXTrackMultiFunctionDelegateWidget</name>
    <message>
        <source>%1 bearbeiten</source>
        <translation>Edit %1</translation>
    </message>
    <message>
        <source>%1 löschen</source>
        <translation>Delete %1</translation>
    </message>
    <message>
        <source>&lt;b&gt;Zoome auf&lt;/b&gt; %1</source>
        <translation>&lt;b&gt;Zoom to&lt;/b&gt; %1</translation>
    </message>
    <message>
        <source>&lt;b&gt;Markiere&lt;/b&gt; %1</source>
        <translation>&lt;b&gt;Mark&lt;/b&gt; %1</translation>
    </message>
</context>
<context>
    <name>KelGPXTrackShape</name>
    <message>
        <source>Punkt</source>
        <translation>Point</translation>
    </message>
    <message>
        <source>Pfeil</source>
        <translation>Arrow</translation>
    </message>
    <message>
        <source>Strecke</source>
        <translation>Track</translation>
    </message>
    <message>
        <source>Fläche</source>
        <translation>Area</translation>
    </message>
    <message>
        <source>Fluglinie</source>
        <translation>Beeline</translation>
    </message>
    <message>
        <source>Automatisch erkannt</source>
        <translation>Detected automatically</translation>
    </message>
    <message>
        <source>unbekannt</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>Ein Punkt kann als verschiedene vorgefertigte Formen gezeichnet werden.</source>
        <translation>A point can be drawn as one of several ready-made shapes.</translation>
    </message>
    <message>
        <source>Alle Punkte werden zu einer Strecke verbunden.</source>
        <translation>All points are joined to a track.</translation>
    </message>
    <message>
        <source>Alle Punkte werden als Außenlinie einer Fläche betrachtet.</source>
        <translation>All points are taken as the outline of an area.</translation>
    </message>
    <message>
        <source>Die beiden Punkt werden als Fluglinie betrachtet.</source>
        <translation>The two points are taken as a beeline.</translation>
    </message>
    <message>
        <source>Die Form wird automatisch erkannt.</source>
        <translation>The shape is detected automatically.</translation>
    </message>
    <message>
        <source>Wir wissen die Form nicht.</source>
        <translation>We do not know the shape.</translation>
    </message>
</context>
<context>
    <name>KelGeoArcEdit</name>
    <message>
        <source>Grad</source>
        <translation>Degrees</translation>
    </message>
    <message>
        <source>Minuten</source>
        <translation>Minutes</translation>
    </message>
    <message>
        <source>Sekunden</source>
        <translation>Seconds</translation>
    </message>
    <message>
        <source>Nord</source>
        <comment>COMBOBOX  Coordinate/Nautical bearing</comment>
        <translation>North</translation>
    </message>
    <message>
        <source>Ost</source>
        <comment>COMBOBOX  Coordinate/Nautical bearing</comment>
        <translation>East</translation>
    </message>
    <message>
        <source>Süd</source>
        <comment>COMBOBOX  Coordinate/Nautical bearing</comment>
        <translation>South</translation>
    </message>
    <message>
        <source>West</source>
        <comment>COMBOBOX  Coordinate/Nautical bearing</comment>
        <translation>West</translation>
    </message>
    <message>
        <source>Himmelsrichtung</source>
        <translation>Compass direction</translation>
    </message>
</context>
<context>
    <name>KelLatitude</name>
    <message>
        <source>N</source>
        <comment>short for &apos;north&apos;</comment>
        <translation>N</translation>
    </message>
    <message>
        <source>S</source>
        <comment>short for &apos;south&apos;</comment>
        <translation>S</translation>
    </message>
</context>
<context>
    <name>KelLongitude</name>
    <message>
        <source>W</source>
        <comment>short for &apos;west&apos;</comment>
        <translation>W</translation>
    </message>
    <message>
        <source>E</source>
        <comment>short for &apos;east&apos;</comment>
        <translation>E</translation>
    </message>
</context>
<context>
    <name>KelPreferencesGeoLocation</name>
    <message>
        <source>Landkarten</source>
        <translation>Maps</translation>
    </message>
    <message>
        <source>Wenn man ein Suchergebnis anklickt, soll es direkt in die Liste der Orte eingefügt werden.</source>
        <comment>CHECKBOX</comment>
        <translation>When a search result is clicked, add it to the list of places at once.</translation>
    </message>
    <message>
        <source>Alternativ wird hierfür ein Knopf angeboten, der explizit benutzt werden muss.</source>
        <translation>Otherwise there is a button for it, which has to be used explicitly.</translation>
    </message>
</context>
<context>
    <name>KelXMLBuilder</name>
    <message>
        <source>cannot be written: %1</source>
        <translation>cannot be written: %1</translation>
    </message>
</context>
<context>
    <name>KelXMLLoader</name>
    <message>
        <source>no file name</source>
        <translation>no file name</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>%1° %2′ %3″ Nord</source>
        <comment>Coordinate / Nautical Bearing  Latitude  Breite</comment>
        <translation>%1° %2′ %3″ north</translation>
    </message>
    <message>
        <source>%1° %2′ %3″ Süd</source>
        <comment>Coordinate / Nautical Bearing  Latitude  Breite</comment>
        <translation>%1° %2′ %3″ south</translation>
    </message>
    <message>
        <source>%1° %2′ %3″ West</source>
        <comment>Coordinate / Nautilal Bearing   Longitude/Länge</comment>
        <translation>%1° %2′ %3″ west</translation>
    </message>
    <message>
        <source>%1° %2′ %3″ Ost</source>
        <comment>Coordinate / Nautilal Bearing   Longitude/Länge</comment>
        <translation>%1° %2′ %3″ east</translation>
    </message>
    <message>
        <source>Datei für Route öffnen</source>
        <translation>Open file with a route</translation>
    </message>
</context>
</TS>
