<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="de">
<context>
    <name>KelAddPlaceDialog</name>
    <message>
        <source>Ort hinzufügen</source>
        <translation>Add place</translation>
    </message>
    <message>
        <source>Fluglinie hinzufügen</source>
        <translation>Add beeline</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>Ort</source>
        <translation>Place</translation>
    </message>
    <message>
        <source>Von</source>
        <translation>From</translation>
    </message>
    <message>
        <source>Nach</source>
        <translation>To</translation>
    </message>
    <message>
        <source>Hinzufügen</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>(eigene Koordinaten)</source>
        <translation>(coordinates of your own)</translation>
    </message>
    <message>
        <source>%1: Breite</source>
        <translation>%1: latitude</translation>
    </message>
    <message>
        <source>%1: Länge</source>
        <translation>%1: longitude</translation>
    </message>
    <message>
        <source>Beispielort:</source>
        <translation>Sample place:</translation>
    </message>
    <message>
        <source>Breite:</source>
        <translation>Latitude:</translation>
    </message>
    <message>
        <source>Länge:</source>
        <translation>Longitude:</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Die Breite muss zwischen 90° Süd und 90° Nord liegen.</source>
        <translation>The latitude must lie between 90° south and 90° north.</translation>
    </message>
    <message>
        <source>Die Länge muss zwischen 180° West und 180° Ost liegen.</source>
        <translation>The longitude must lie between 180° west and 180° east.</translation>
    </message>
    <message>
        <source>Der Punkt 0° Nord, 0° Ost gilt als nicht gesetzt.</source>
        <translation>The point 0° north, 0° east counts as not set.</translation>
    </message>
</context>
<context>
    <name>KelExportDialog</name>
    <message>
        <source>Bild exportieren</source>
        <translation>Export picture</translation>
    </message>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
    <message>
        <source>Das Bild wird %1 × %2 Pixel groß.</source>
        <translation>The picture will have %1 × %2 pixels.</translation>
    </message>
    <message>
        <source>Weiter</source>
        <translation>Continue</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>&amp;Breite:</source>
        <translation>&amp;Width:</translation>
    </message>
    <message>
        <source>&amp;Höhe:</source>
        <translation>&amp;Height:</translation>
    </message>
    <message>
        <source>&amp;Faktor:</source>
        <translation>&amp;Factor:</translation>
    </message>
</context>
<context>
    <name>KelFileImporter</name>
    <message>
        <source>Die Datei enthält keine Strecken.</source>
        <translation>The file holds no tracks.</translation>
    </message>
    <message>
        <source>Dieses Dateiformat wird nicht unterstützt.</source>
        <translation>This file format is not supported.</translation>
    </message>
</context>
<context>
    <name>KelMapView</name>
    <message>
        <source>Karte</source>
        <translation>Map</translation>
    </message>
    <message>
        <source>Pfeiltasten verschieben, Plus und Minus zoomen, Pos1 zeigt alles.</source>
        <translation>Arrow keys move, plus and minus zoom, Home shows everything.</translation>
    </message>
</context>
<context>
    <name>KelOwnMapDialog</name>
    <message>
        <source>Eigenes Kartenbild</source>
        <translation>Own map picture</translation>
    </message>
    <message>
        <source>&amp;Datei …</source>
        <translation>&amp;File …</translation>
    </message>
    <message>
        <source>Bild:</source>
        <translation>Picture:</translation>
    </message>
    <message>
        <source>Nordrand:</source>
        <translation>North edge:</translation>
    </message>
    <message>
        <source>Südrand:</source>
        <translation>South edge:</translation>
    </message>
    <message>
        <source>Westrand:</source>
        <translation>West edge:</translation>
    </message>
    <message>
        <source>Ostrand:</source>
        <translation>East edge:</translation>
    </message>
    <message>
        <source>Verwenden</source>
        <translation>Use</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Kartenbild wählen</source>
        <translation>Choose a map picture</translation>
    </message>
    <message>
        <source>Bilder (*.png *.jpg *.jpeg *.webp)</source>
        <translation>Pictures (*.png *.jpg *.jpeg *.webp)</translation>
    </message>
    <message>
        <source>Das Bild ist nicht lesbar: %1</source>
        <translation>The picture cannot be read: %1</translation>
    </message>
    <message>
        <source>Das Bild ist nicht lesbar: es ist weder PNG noch JPEG noch WebP.</source>
        <translation>The picture cannot be read: it is neither PNG nor JPEG nor WebP.</translation>
    </message>
    <message>
        <source>Das Bild ist zu groß: mehr als 100 Millionen Bildpunkte oder 32767 auf einer Seite.</source>
        <translation>The picture is too large: more than 100 million pixels, or 32767 on one side.</translation>
    </message>
    <message>
        <source>Bitte ein Bild wählen.</source>
        <translation>Please choose a picture.</translation>
    </message>
    <message>
        <source>Der Nordrand muss nördlich des Südrands liegen, alle Ränder auf der Erde.</source>
        <translation>The north edge must lie north of the south edge, and all edges on the earth.</translation>
    </message>
</context>
<context>
    <name>KelPreferencesDialog</name>
    <message>
        <source>Einstellungen</source>
        <translation>Preferences</translation>
    </message>
    <message>
        <source>Übernehmen</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>KelProblemBar</name>
    <message>
        <source>Probleme</source>
        <translation>Problems</translation>
    </message>
    <message>
        <source>&amp;Verwerfen</source>
        <translation>Dis&amp;miss</translation>
    </message>
    <message>
        <source>Was schiefging</source>
        <translation>What went wrong</translation>
    </message>
    <message numerus="yes">
        <source>%n Problem(e)</source>
        <translation>
            <numerusform>%n problem</numerusform>
            <numerusform>%n problems</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>KelSession</name>
    <message>
        <source>Die letzte Sitzung wird gelesen …</source>
        <translation>Reading the last session …</translation>
    </message>
    <message>
        <source>Die letzte Sitzung ist nicht lesbar: %1</source>
        <translation>The last session cannot be read: %1</translation>
    </message>
    <message>
        <source>Die Sitzung kann nicht gesichert werden: %1</source>
        <translation>The session cannot be saved: %1</translation>
    </message>
    <message>
        <source>Der Ordner %1 kann nicht angelegt werden.</source>
        <translation>The folder %1 cannot be made.</translation>
    </message>
</context>
<context>
    <name>KelStyleEditor</name>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
    <message>
        <source>Linienbreite</source>
        <translation>Line width</translation>
    </message>
    <message>
        <source>Breite des Hofs</source>
        <translation>Width of the halo</translation>
    </message>
    <message>
        <source>&amp;Linie zeichnen</source>
        <translation>Draw &amp;line</translation>
    </message>
    <message>
        <source>Fläche fülle&amp;n</source>
        <translation>Fill &amp;area</translation>
    </message>
    <message>
        <source>Glättung</source>
        <translation>Smoothing</translation>
    </message>
    <message>
        <source>Schritte der Glättung</source>
        <translation>Steps of smoothing</translation>
    </message>
    <message>
        <source>Als &amp;Standard für neue Strecken</source>
        <translation>Default for new trac&amp;ks</translation>
    </message>
    <message>
        <source> %</source>
        <translation>%</translation>
    </message>
    <message>
        <source>So viel behält jeder Punkt von seiner eigenen Lage; 100 % glättet nicht.</source>
        <translation>How much each point keeps of its own position; 100% does not smooth.</translation>
    </message>
    <message>
        <source>In so viele gerade Stücke wird die Strecke geteilt.</source>
        <translation>Into how many straight pieces the track is divided.</translation>
    </message>
    <message>
        <source>So weit bleibt die Karte um die Strecke herum sichtbar, wenn sie freigestellt wird.</source>
        <translation>How far around the track the map stays visible where it is faded out.</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Shape</translation>
    </message>
    <message>
        <source>Strichart</source>
        <translation>Dashes</translation>
    </message>
    <message>
        <source>durchgezogen</source>
        <translation>solid</translation>
    </message>
    <message>
        <source>gestrichelt</source>
        <translation>dashed</translation>
    </message>
    <message>
        <source>gepunktet</source>
        <translation>dotted</translation>
    </message>
    <message>
        <source>Strich-Punkt</source>
        <translation>dash dot</translation>
    </message>
    <message>
        <source>Strich-Punkt-Punkt</source>
        <translation>dash dot dot</translation>
    </message>
    <message>
        <source>keine</source>
        <translation>none</translation>
    </message>
    <message>
        <source>Na&amp;me:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>Linien&amp;farbe:</source>
        <translation>Line &amp;colour:</translation>
    </message>
    <message>
        <source>Linienb&amp;reite:</source>
        <translation>Line &amp;width:</translation>
    </message>
    <message>
        <source>S&amp;trichart:</source>
        <translation>&amp;Dashes:</translation>
    </message>
    <message>
        <source>F&amp;üllfarbe:</source>
        <translation>Fill c&amp;olour:</translation>
    </message>
    <message>
        <source>&amp;Hof:</source>
        <translation>&amp;Halo:</translation>
    </message>
    <message>
        <source>F&amp;orm:</source>
        <translation>Sha&amp;pe:</translation>
    </message>
    <message>
        <source>&amp;Glättung:</source>
        <translation>&amp;Smoothing:</translation>
    </message>
    <message>
        <source>S&amp;chritte:</source>
        <translation>S&amp;teps:</translation>
    </message>
    <message>
        <source>Linie zeichnen</source>
        <translation>Draw line</translation>
    </message>
    <message>
        <source>Fläche füllen</source>
        <translation>Fill area</translation>
    </message>
    <message>
        <source>Keine Strecke ausgewählt</source>
        <translation>No track selected</translation>
    </message>
    <message numerus="yes">
        <source>%n Strecke(n)</source>
        <translation>
            <numerusform>%n track</numerusform>
            <numerusform>%n tracks</numerusform>
        </translation>
    </message>
    <message>
        <source>Füllfarbe</source>
        <translation>Fill colour</translation>
    </message>
    <message>
        <source>Linienfarbe</source>
        <translation>Line colour</translation>
    </message>
    <message>
        <source>Füllfarbe %1</source>
        <translation>Fill colour %1</translation>
    </message>
    <message>
        <source>Linienfarbe %1</source>
        <translation>Line colour %1</translation>
    </message>
</context>
<context>
    <name>KelTrackDocument</name>
    <message>
        <source>Neue Auswahl</source>
        <translation>New selection</translation>
    </message>
    <message>
        <source>%1 wird geladen …</source>
        <translation>Loading %1 …</translation>
    </message>
    <message>
        <source>%1 wird gespeichert …</source>
        <translation>Saving %1 …</translation>
    </message>
</context>
<context>
    <name>KelTrackListView</name>
    <message>
        <source>Strecken</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Dateien (GPX, KML, KMZ) hierher ziehen oder mit „Strecken öffnen“ wählen.</source>
        <translation>Drop files (GPX, KML, KMZ) here or choose them with “Open tracks”.</translation>
    </message>
</context>
<context>
    <name>KelViewerWindow</name>
    <message>
        <source>Gespeicherte Auswahl (*.%1)</source>
        <translation>Saved selection (*.%1)</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>%1 von %2: %3</source>
        <translation>%1 of %2: %3</translation>
    </message>
    <message>
        <source>Sichtbarkeit der Karte</source>
        <translation>Visibility of the map</translation>
    </message>
    <message>
        <source>Wie stark die Karte außerhalb der Strecken zu sehen ist.</source>
        <translation>How much of the map shows outside the tracks.</translation>
    </message>
    <message>
        <source>&amp;Karte ringsum:</source>
        <translation>Map a&amp;round:</translation>
    </message>
    <message>
        <source>Strecken</source>
        <translation>Tracks</translation>
    </message>
    <message>
        <source>Darstellung</source>
        <translation>Style</translation>
    </message>
    <message>
        <source>Werkzeuge</source>
        <translation>Tools</translation>
    </message>
    <message>
        <source>&amp;Datei</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&amp;Neu</source>
        <translation>&amp;New</translation>
    </message>
    <message>
        <source>Strecken ö&amp;ffnen …</source>
        <translation>&amp;Open tracks …</translation>
    </message>
    <message>
        <source>Auswahl &amp;laden …</source>
        <translation>&amp;Load selection …</translation>
    </message>
    <message>
        <source>Auswahl &amp;speichern</source>
        <translation>&amp;Save selection</translation>
    </message>
    <message>
        <source>Auswahl speichern &amp;unter …</source>
        <translation>Save selection &amp;as …</translation>
    </message>
    <message>
        <source>Bild &amp;exportieren …</source>
        <translation>&amp;Export picture …</translation>
    </message>
    <message>
        <source>&amp;Beenden</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>&amp;Rückgängig</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>&amp;Rückgängig: %1</source>
        <translation>&amp;Undo: %1</translation>
    </message>
    <message>
        <source>&amp;Wiederholen</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>&amp;Wiederholen: %1</source>
        <translation>&amp;Redo: %1</translation>
    </message>
    <message>
        <source>&amp;Bearbeiten</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>U&amp;mbenennen</source>
        <translation>Re&amp;name</translation>
    </message>
    <message>
        <source>&amp;Verdoppeln</source>
        <translation>&amp;Duplicate</translation>
    </message>
    <message>
        <source>&amp;Löschen</source>
        <translation>D&amp;elete</translation>
    </message>
    <message>
        <source>Nach &amp;oben</source>
        <translation>Mo&amp;ve up</translation>
    </message>
    <message>
        <source>Nach &amp;unten</source>
        <translation>Move do&amp;wn</translation>
    </message>
    <message>
        <source>&amp;Alle auswählen</source>
        <translation>Select &amp;all</translation>
    </message>
    <message>
        <source>&amp;Einstellungen …</source>
        <translation>&amp;Preferences …</translation>
    </message>
    <message>
        <source>&amp;Einfügen</source>
        <translation>&amp;Insert</translation>
    </message>
    <message>
        <source>&amp;Ort …</source>
        <translation>&amp;Place …</translation>
    </message>
    <message>
        <source>Ort hinzufügen</source>
        <translation>Add place</translation>
    </message>
    <message>
        <source>&amp;Fluglinie …</source>
        <translation>&amp;Beeline …</translation>
    </message>
    <message>
        <source>Fluglinie hinzufügen</source>
        <translation>Add beeline</translation>
    </message>
    <message>
        <source>&amp;Ansicht</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>&amp;Alles zeigen</source>
        <translation>Show &amp;everything</translation>
    </message>
    <message>
        <source>Auf Au&amp;swahl zoomen</source>
        <translation>&amp;Zoom to selection</translation>
    </message>
    <message>
        <source>Ver&amp;größern</source>
        <translation>Zoom &amp;in</translation>
    </message>
    <message>
        <source>Ver&amp;kleinern</source>
        <translation>Zoom &amp;out</translation>
    </message>
    <message>
        <source>&amp;Eigenes Kartenbild …</source>
        <translation>O&amp;wn map picture …</translation>
    </message>
    <message>
        <source>&amp;Weltkarte</source>
        <translation>World &amp;map</translation>
    </message>
    <message>
        <source>Reihenfolge</source>
        <translation>Order</translation>
    </message>
    <message>
        <source>%1[*] – Strecken</source>
        <translation>%1[*] – Tracks</translation>
    </message>
    <message>
        <source>%1: Nur Dateien dieses Rechners können geöffnet werden.</source>
        <translation>%1: only files of this computer can be opened.</translation>
    </message>
    <message>
        <source>%1 öffnen</source>
        <translation>Open %1</translation>
    </message>
    <message>
        <source>Abgebrochen; was gelesen war, bleibt.</source>
        <translation>Cancelled; what had been read stays.</translation>
    </message>
    <message numerus="yes">
        <source>%n Strecke(n) gelesen.</source>
        <translation>
            <numerusform>%n track read.</numerusform>
            <numerusform>%n tracks read.</numerusform>
        </translation>
    </message>
    <message>
        <source>Es wurde keine Strecke gelesen.</source>
        <translation>No track was read.</translation>
    </message>
    <message>
        <source>Umbenennen</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>Löschen</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Verdoppeln</source>
        <translation>Duplicate</translation>
    </message>
    <message>
        <source>Strecken öffnen</source>
        <translation>Open tracks</translation>
    </message>
    <message>
        <source>Strecken (%1)</source>
        <translation>Tracks (%1)</translation>
    </message>
    <message>
        <source>Auswahl laden</source>
        <translation>Load selection</translation>
    </message>
    <message>
        <source>Auswahl speichern</source>
        <translation>Save selection</translation>
    </message>
    <message>
        <source>Gespeichert: %1</source>
        <translation>Saved: %1</translation>
    </message>
    <message>
        <source>Ungespeicherte Änderungen</source>
        <translation>Unsaved changes</translation>
    </message>
    <message>
        <source>„%1“ wurde geändert.</source>
        <translation>“%1” was changed.</translation>
    </message>
    <message>
        <source>&amp;Speichern</source>
        <translation>&amp;Save</translation>
    </message>
    <message>
        <source>&amp;Verwerfen</source>
        <translation>&amp;Discard</translation>
    </message>
    <message>
        <source>&amp;Abbrechen</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>Sollen die Änderungen gespeichert werden?</source>
        <translation>Do you want to save the changes?</translation>
    </message>
    <message>
        <source>Bild exportieren</source>
        <translation>Export picture</translation>
    </message>
    <message>
        <source>Bilder (*.png *.jpg *.webp *.pdf *.svg)</source>
        <translation>Pictures (*.png *.jpg *.webp *.pdf *.svg)</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Dieses Bildformat gibt es nicht; möglich sind %1.</source>
        <translation>There is no such picture format; there are %1.</translation>
    </message>
    <message>
        <source>Das Bild ist für dieses Format zu groß; höchstens %1 Pixel je Seite.</source>
        <translation>The picture is too large for this format; at most %1 pixels per side.</translation>
    </message>
    <message>
        <source>Das Bild wird gezeichnet …</source>
        <translation>Drawing the picture …</translation>
    </message>
    <message>
        <source>Exportiert: %1</source>
        <translation>Exported: %1</translation>
    </message>
    <message>
        <source>Bitte warten, bis die Dateien gelesen sind.</source>
        <translation>Please wait until the files have been read.</translation>
    </message>
    <message>
        <source>Die Sitzung wird gesichert …</source>
        <translation>Saving the session …</translation>
    </message>
    <message>
        <source>Neue Strecken werden so gezeichnet.</source>
        <translation>New tracks will be drawn like this.</translation>
    </message>
</context>
</TS>
