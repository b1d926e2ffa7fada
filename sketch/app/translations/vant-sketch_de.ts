<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Actions</name>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Senden</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>Go to Questions, Buttons, Sheet in Turn</source>
        <translation>Reihum zu Fragen, Knöpfen, Blatt gehen</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>&amp;Tasten</translation>
    </message>
    <message>
        <source>&amp;About VANT Sketch</source>
        <translation>&amp;Über VANT-Skizze</translation>
    </message>
    <message>
        <source>&amp;New Sheet</source>
        <translation>&amp;Neues Blatt</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>&amp;Insert…</source>
        <translation>&amp;Einfügen …</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter …</translation>
    </message>
    <message>
        <source>Export S&amp;VG…</source>
        <translation>S&amp;VG exportieren …</translation>
    </message>
    <message>
        <source>Export &amp;PNG…</source>
        <translation>&amp;PNG exportieren …</translation>
    </message>
    <message>
        <source>P&amp;references…</source>
        <translation>Einste&amp;llungen …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Select &amp;None</source>
        <translation>Auswahl auf&amp;heben</translation>
    </message>
    <message>
        <source>Select Ne&amp;xt Stroke</source>
        <translation>Nä&amp;chsten Strich auswählen</translation>
    </message>
    <message>
        <source>Select Pre&amp;vious Stroke</source>
        <translation>V&amp;origen Strich auswählen</translation>
    </message>
    <message>
        <source>&amp;Duplicate</source>
        <translation>&amp;Verdoppeln</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Clear Sheet</source>
        <translation>Blatt l&amp;eeren</translation>
    </message>
    <message>
        <source>Con&amp;vert Every Stroke</source>
        <translation>&amp;Jeden Strich deuten</translation>
    </message>
    <message>
        <source>Snap to &amp;Grid</source>
        <translation>Am &amp;Raster einrasten</translation>
    </message>
    <message>
        <source>Snap to &amp;Shapes</source>
        <translation>An &amp;Formen einrasten</translation>
    </message>
    <message>
        <source>Snap to Steps of &amp;15°</source>
        <translation>In Schritten von &amp;15° einrasten</translation>
    </message>
    <message>
        <source>Move Selection Left</source>
        <translation>Auswahl nach links schieben</translation>
    </message>
    <message>
        <source>Move Selection Right</source>
        <translation>Auswahl nach rechts schieben</translation>
    </message>
    <message>
        <source>Move Selection Up</source>
        <translation>Auswahl nach oben schieben</translation>
    </message>
    <message>
        <source>Move Selection Down</source>
        <translation>Auswahl nach unten schieben</translation>
    </message>
    <message>
        <source>Move Selection Far Left</source>
        <translation>Auswahl weit nach links schieben</translation>
    </message>
    <message>
        <source>Move Selection Far Right</source>
        <translation>Auswahl weit nach rechts schieben</translation>
    </message>
    <message>
        <source>Move Selection Far Up</source>
        <translation>Auswahl weit nach oben schieben</translation>
    </message>
    <message>
        <source>Move Selection Far Down</source>
        <translation>Auswahl weit nach unten schieben</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Editor&apos;s Scale</source>
        <translation>&amp;Maßstab des Zeichenprogramms</translation>
    </message>
    <message>
        <source>Fit the &amp;Sheet</source>
        <translation>Ganzes &amp;Blatt zeigen</translation>
    </message>
    <message>
        <source>Fit the S&amp;ketch</source>
        <translation>Ganze &amp;Skizze zeigen</translation>
    </message>
    <message>
        <source>Turn &amp;Left</source>
        <translation>Nach &amp;links drehen</translation>
    </message>
    <message>
        <source>Turn &amp;Right</source>
        <translation>Nach &amp;rechts drehen</translation>
    </message>
    <message>
        <source>Turn &amp;Upright</source>
        <translation>&amp;Aufrecht drehen</translation>
    </message>
    <message>
        <source>&amp;Full Screen</source>
        <translation>&amp;Vollbild</translation>
    </message>
    <message>
        <source>&amp;Undo: %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo: %1</source>
        <translation>&amp;Wiederholen: %1</translation>
    </message>
    <message>
        <source>&amp;Other Readings of the Stroke</source>
        <translation>An&amp;dere Deutungen des Strichs</translation>
    </message>
</context>
<context>
    <name>FileDesk</name>
    <message>
        <source>sketch</source>
        <translation>Skizze</translation>
    </message>
    <message>
        <source>Open a Sketch</source>
        <translation>Skizze öffnen</translation>
    </message>
    <message>
        <source>Sketches (*.xml);;All files (*)</source>
        <translation>Skizzen (*.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Insert a Sketch</source>
        <translation>Skizze einfügen</translation>
    </message>
    <message>
        <source>Save the Sketch</source>
        <translation>Skizze speichern</translation>
    </message>
    <message>
        <source>Sketches (*.xml)</source>
        <translation>Skizzen (*.xml)</translation>
    </message>
    <message>
        <source>Export as SVG</source>
        <translation>Als SVG exportieren</translation>
    </message>
    <message>
        <source>Scalable vector graphics (*.svg)</source>
        <translation>Vektorgrafik (*.svg)</translation>
    </message>
    <message>
        <source>Export as PNG</source>
        <translation>Als PNG exportieren</translation>
    </message>
    <message>
        <source>Pictures (*.png)</source>
        <translation>Bilder (*.png)</translation>
    </message>
    <message>
        <source>Opened %1.</source>
        <translation>%1 ist geöffnet.</translation>
    </message>
    <message>
        <source>Inserted %1.</source>
        <translation>%1 ist eingefügt.</translation>
    </message>
    <message>
        <source>Saved %1.</source>
        <translation>%1 ist gespeichert.</translation>
    </message>
    <message>
        <source>Exported %1.</source>
        <translation>%1 ist exportiert.</translation>
    </message>
    <message>
        <source>Cannot export %1: the picture would be too large. Choose a smaller size in the preferences.</source>
        <translation>%1 kann nicht exportiert werden: das Bild würde zu groß. Wählen Sie in den Einstellungen eine kleinere Größe.</translation>
    </message>
</context>
<context>
    <name>KeysDialog</name>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Full stop (.)</source>
        <translation>Punkt (.)</translation>
    </message>
    <message>
        <source>Comma (,)</source>
        <translation>Komma (,)</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>Was sie bewirkt</translation>
    </message>
    <message>
        <source>hold still</source>
        <translation>stillhalten</translation>
    </message>
    <message>
        <source>At a stroke&apos;s end: shows what it is read as; drag on to change its size</source>
        <translation>Am Ende eines Strichs: zeigt, als was er gelesen wird; weiterziehen ändert die Größe</translation>
    </message>
    <message>
        <source>Shows another reading of the stroke; with Shift the one before</source>
        <translation>Zeigt eine andere Deutung des Strichs; mit Umschalt die vorige</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Takes the reading that is shown</source>
        <translation>Übernimmt die gezeigte Deutung</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Keeps the stroke as it is; else clears the selection</source>
        <translation>Lässt den Strich, wie er ist; sonst: wählt nichts mehr aus</translation>
    </message>
    <message>
        <source>Alt or Ctrl, held</source>
        <translation>Alt oder Strg gehalten</translation>
    </message>
    <message>
        <source>Nothing snaps</source>
        <translation>Nichts rastet ein</translation>
    </message>
    <message>
        <source>Space, held</source>
        <translation>Leertaste gehalten</translation>
    </message>
    <message>
        <source>Drags the sheet</source>
        <translation>Verschiebt das Blatt</translation>
    </message>
    <message>
        <source>Ctrl+wheel</source>
        <translation>Strg+Rad</translation>
    </message>
    <message>
        <source>Zooms about the pointer</source>
        <translation>Vergrößert um den Zeiger</translation>
    </message>
</context>
<context>
    <name>KindNames</name>
    <message>
        <source>line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>polyline</source>
        <translation>Linienzug</translation>
    </message>
    <message>
        <source>triangle</source>
        <translation>Dreieck</translation>
    </message>
    <message>
        <source>square</source>
        <translation>Quadrat</translation>
    </message>
    <message>
        <source>rectangle</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>quadrilateral</source>
        <translation>Viereck</translation>
    </message>
    <message>
        <source>polygon</source>
        <translation>Vieleck</translation>
    </message>
    <message>
        <source>circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>arc</source>
        <translation>Bogen</translation>
    </message>
    <message>
        <source>ellipse</source>
        <translation>Ellipse</translation>
    </message>
    <message>
        <source>elliptic arc</source>
        <translation>elliptischer Bogen</translation>
    </message>
    <message>
        <source>free curve</source>
        <translation>freie Kurve</translation>
    </message>
    <message>
        <source>ink</source>
        <translation>Tinte</translation>
    </message>
</context>
<context>
    <name>LinkPanel</name>
    <message>
        <source>&amp;Try Again</source>
        <translation>&amp;Nochmals versuchen</translation>
    </message>
    <message>
        <source>Editor</source>
        <translation>Zeichenprogramm</translation>
    </message>
    <message>
        <source>Not linked to an editor.</source>
        <translation>Nicht mit einem Zeichenprogramm verbunden.</translation>
    </message>
    <message>
        <source>Started without the link to an editor.</source>
        <translation>Ohne Verbindung zu einem Zeichenprogramm gestartet.</translation>
    </message>
    <message>
        <source>Waiting for the editor: choose Start VANT there.</source>
        <translation>Warten auf das Zeichenprogramm: wählen Sie dort „Start VANT“.</translation>
    </message>
    <message>
        <source>The editor has been waiting since %1.</source>
        <translation>Das Zeichenprogramm wartet seit %1.</translation>
    </message>
    <message numerus="yes">
        <source>The editor has been waiting since %1, for %n minute(s).</source>
        <translation>
            <numerusform>Das Zeichenprogramm wartet seit %1, seit %n Minute.</numerusform>
            <numerusform>Das Zeichenprogramm wartet seit %1, seit %n Minuten.</numerusform>
        </translation>
    </message>
    <message>
        <source>Sending…</source>
        <translation>Wird gesendet …</translation>
    </message>
    <message>
        <source>Cancelled: the editor has got an empty figure.</source>
        <translation>Abgebrochen: das Zeichenprogramm hat eine leere Figur bekommen.</translation>
    </message>
    <message>
        <source>The editor has its answer. Waiting for the next.</source>
        <translation>Das Zeichenprogramm hat seine Antwort. Warten auf das nächste Mal.</translation>
    </message>
    <message>
        <source>Sent at %1. The sketch stays here.</source>
        <translation>Um %1 gesendet. Die Skizze bleibt hier.</translation>
    </message>
    <message>
        <source>Sent at %1; the sketch was changed since.</source>
        <translation>Um %1 gesendet; die Skizze ist seitdem geändert.</translation>
    </message>
    <message>
        <source>The editor is gone without its answer. The sketch is kept.</source>
        <translation>Das Zeichenprogramm ist ohne Antwort gegangen. Die Skizze bleibt erhalten.</translation>
    </message>
    <message numerus="yes">
        <source>%n other editor(s) wait their turn.</source>
        <translation>
            <numerusform>%n weiteres Zeichenprogramm wartet.</numerusform>
            <numerusform>%n weitere Zeichenprogramme warten.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LinkServer</name>
    <message>
        <source>%1 (process %2)</source>
        <translation>%1 (Prozess %2)</translation>
    </message>
    <message>
        <source>a program of the user %1</source>
        <translation>einem Programm von %1</translation>
    </message>
    <message>
        <source>another program</source>
        <translation>einem anderen Programm</translation>
    </message>
    <message>
        <source>Port %1 is in use by %2, so no editor can reach this program. End that program, then try again.</source>
        <translation>Port %1 ist von %2 belegt, darum erreicht kein Zeichenprogramm dieses Programm. Beenden Sie jenes, und versuchen Sie es nochmals.</translation>
    </message>
    <message>
        <source>No editor can reach this program: it cannot listen on 127.0.0.1:%1 (%2).</source>
        <translation>Kein Zeichenprogramm erreicht dieses Programm: 127.0.0.1:%1 ist nicht zu öffnen (%2).</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>About VANT Sketch</source>
        <translation>Über VANT-Skizze</translation>
    </message>
    <message>
        <source>VANT Sketch %1

Draw by hand over the view of your editor; what you draw comes back there as paths.</source>
        <translation>VANT-Skizze %1

Zeichnen Sie freihändig über der Ansicht Ihres Zeichenprogramms; das Gezeichnete kommt dort als Pfade an.</translation>
    </message>
    <message>
        <source>%1[*] – VANT Sketch</source>
        <translation>%1[*] – VANT-Skizze</translation>
    </message>
    <message>
        <source>Sketch</source>
        <translation>Skizze</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Earlier Sketches</source>
        <translation>F&amp;rühere Skizzen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Dra&amp;w</source>
        <translation>Z&amp;eichnen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>The sheet is clear. Undo brings back what was on it.</source>
        <translation>Das Blatt ist leer. „Rückgängig“ bringt zurück, was darauf war.</translation>
    </message>
    <message>
        <source>Ed&amp;itor</source>
        <translation>&amp;Zeichenprogramm</translation>
    </message>
</context>
<context>
    <name>NoticeArea</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>OptionsBar</name>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Tolerance</source>
        <translation>Toleranz</translation>
    </message>
    <message>
        <source>How far a stroke may be from the shape that it is read as</source>
        <translation>Wie weit ein Strich von der Form abweichen darf, als die er gelesen wird</translation>
    </message>
    <message>
        <source>Steadiness</source>
        <translation>Ruhe</translation>
    </message>
    <message>
        <source>How much the pen&apos;s tremor is smoothed while you draw</source>
        <translation>Wie sehr das Zittern des Stifts beim Zeichnen geglättet wird</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Drawing</source>
        <translation>&amp;Zeichnen</translation>
    </message>
    <message>
        <source>&amp;Pens</source>
        <translation>S&amp;tifte</translation>
    </message>
    <message>
        <source>&amp;Look</source>
        <translation>&amp;Aussehen</translation>
    </message>
    <message>
        <source>P&amp;ictures</source>
        <translation>&amp;Bilder</translation>
    </message>
    <message>
        <source>&amp;Convert every stroke, without holding still</source>
        <translation>&amp;Jeden Strich deuten, auch ohne Stillhalten</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
    <message>
        <source>to the &amp;grid</source>
        <translation>am &amp;Raster</translation>
    </message>
    <message>
        <source>to &amp;shapes that are there</source>
        <translation>an vorhandenen &amp;Formen</translation>
    </message>
    <message>
        <source>to steps of &amp;15°</source>
        <translation>in Schritten von &amp;15°</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keins</translation>
    </message>
    <message>
        <source>&amp;Hold still for</source>
        <translation>&amp;Stillhalten</translation>
    </message>
    <message>
        <source>&amp;Tolerance</source>
        <translation>&amp;Toleranz</translation>
    </message>
    <message>
        <source>&amp;Least size of a shape</source>
        <translation>&amp;Kleinste Größe einer Form</translation>
    </message>
    <message>
        <source>Snap</source>
        <translation>Einrasten</translation>
    </message>
    <message>
        <source>Grid &amp;of own sheets</source>
        <translation>Raster &amp;eigener Blätter</translation>
    </message>
    <message>
        <source>&amp;Fingers draw (else they move the sheet)</source>
        <translation>&amp;Finger zeichnen (sonst verschieben sie das Blatt)</translation>
    </message>
    <message>
        <source>&amp;Steadiness</source>
        <translation>&amp;Ruhe</translation>
    </message>
    <message>
        <source>&amp;Width of the ink</source>
        <translation>&amp;Breite der Tinte</translation>
    </message>
    <message>
        <source>As the desktop</source>
        <translation>Wie der Schreibtisch</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>High contrast, light</source>
        <translation>Hoher Kontrast, hell</translation>
    </message>
    <message>
        <source>High contrast, dark</source>
        <translation>Hoher Kontrast, dunkel</translation>
    </message>
    <message>
        <source>Full</source>
        <translation>Voll</translation>
    </message>
    <message>
        <source>Reduced</source>
        <translation>Verringert</translation>
    </message>
    <message>
        <source>Another language comes with the next start.</source>
        <translation>Eine andere Sprache kommt mit dem nächsten Start.</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>&amp;Farben</translation>
    </message>
    <message>
        <source>&amp;Motion</source>
        <translation>Be&amp;wegung</translation>
    </message>
    <message>
        <source>L&amp;anguage (from the next start)</source>
        <translation>S&amp;prache (ab dem nächsten Start)</translation>
    </message>
    <message>
        <source>The sheet</source>
        <translation>Das Blatt</translation>
    </message>
    <message>
        <source>What is drawn</source>
        <translation>Das Gezeichnete</translation>
    </message>
    <message>
        <source> times</source>
        <translation>-fach</translation>
    </message>
    <message>
        <source>&amp;Transparent (else white)</source>
        <translation>&amp;Durchsichtig (sonst weiß)</translation>
    </message>
    <message>
        <source>Pictures &amp;show</source>
        <translation>Bilder &amp;zeigen</translation>
    </message>
    <message>
        <source>Si&amp;ze of a PNG</source>
        <translation>&amp;Größe eines PNG</translation>
    </message>
    <message>
        <source>&amp;Width of lines</source>
        <translation>&amp;Breite der Linien</translation>
    </message>
</context>
<context>
    <name>Questions</name>
    <message>
        <source>What you draw cannot be kept safe: %1. Free space on the disk, or save the sketch elsewhere; each stroke tries again.</source>
        <translation>Was Sie zeichnen, kann nicht gesichert werden: %1. Schaffen Sie Platz auf dem Datenträger, oder speichern Sie die Skizze anderswo; jeder Strich versucht es nochmals.</translation>
    </message>
    <message numerus="yes">
        <source>The sketch&apos;s file was damaged: %n stroke(s) could be read. The file as it was is kept as %1.</source>
        <translation>
            <numerusform>Die Datei der Skizze war beschädigt: %n Strich war zu lesen. Die Datei, wie sie war, liegt unter %1.</numerusform>
            <numerusform>Die Datei der Skizze war beschädigt: %n Striche waren zu lesen. Die Datei, wie sie war, liegt unter %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>A sketch of %1 with %n stroke(s) was not finished.</source>
        <translation>
            <numerusform>Eine Skizze vom %1 mit %n Strich wurde nicht fertig.</numerusform>
            <numerusform>Eine Skizze vom %1 mit %n Strichen wurde nicht fertig.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Recover</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>&amp;Später</translation>
    </message>
    <message>
        <source>Cannot read %1, or another program has it. The file is as it was.</source>
        <translation>%1 ist nicht zu lesen, oder ein anderes Programm hat die Datei. Sie ist, wie sie war.</translation>
    </message>
    <message>
        <source>The editor asks for a sketch. On the sheet is the one that was sent at %1.</source>
        <translation>Das Zeichenprogramm bittet um eine Skizze. Auf dem Blatt ist die, die um %1 gesendet wurde.</translation>
    </message>
    <message>
        <source>The editor asks for a sketch. On the sheet is one that no editor has got yet.</source>
        <translation>Das Zeichenprogramm bittet um eine Skizze. Auf dem Blatt ist eine, die noch kein Zeichenprogramm bekommen hat.</translation>
    </message>
    <message>
        <source>&amp;Go On With It</source>
        <translation>Damit weiter&amp;machen</translation>
    </message>
    <message>
        <source>The sketch before was put away, under File, Earlier Sketches.</source>
        <translation>Die vorige Skizze liegt unter „Datei“, „Frühere Skizzen“.</translation>
    </message>
    <message>
        <source>&amp;Bring It Back</source>
        <translation>Zurückh&amp;olen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n stroke(s)</source>
        <translation>
            <numerusform>%1, %n Strich</numerusform>
            <numerusform>%1, %n Striche</numerusform>
        </translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>&amp;New Sheet</source>
        <translation>&amp;Neues Blatt</translation>
    </message>
</context>
<context>
    <name>SketchCanvas</name>
    <message>
        <source>Sketch sheet</source>
        <translation>Skizzenblatt</translation>
    </message>
    <message>
        <source>Draw here with pen, mouse or finger. Tab goes through the readings of the last stroke, Enter takes one, Escape keeps the ink.</source>
        <translation>Zeichnen Sie hier mit Stift, Maus oder Finger. Tab geht durch die Deutungen des letzten Strichs, Eingabe übernimmt eine, Esc lässt die Tinte.</translation>
    </message>
</context>
<context>
    <name>SketchFiles</name>
    <message>
        <source>Cannot open %1: %2. The sketch is as it was.</source>
        <translation>%1 ist nicht zu öffnen: %2. Die Skizze ist, wie sie war.</translation>
    </message>
    <message>
        <source>it is no ordinary file</source>
        <translation>es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>Cannot write %1: the sketch is too large to be opened again. No file was changed, and the sketch is as it was. Delete a part of it, and save again.</source>
        <translation>%1 ist nicht zu schreiben: Die Skizze ist zu groß, um wieder geöffnet zu werden. Keine Datei wurde geändert, und die Skizze ist, wie sie war. Löschen Sie einen Teil davon, und speichern Sie nochmals.</translation>
    </message>
    <message>
        <source>it is larger than any sketch</source>
        <translation>die Datei ist größer als jede Skizze</translation>
    </message>
    <message>
        <source>Cannot write %1: %2. No file was changed, and the sketch is as it was.</source>
        <translation>%1 ist nicht zu schreiben: %2. Keine Datei wurde geändert, und die Skizze ist, wie sie war.</translation>
    </message>
    <message>
        <source>it holds no sketch</source>
        <translation>sie enthält keine Skizze</translation>
    </message>
</context>
<context>
    <name>SketchModel</name>
    <message>
        <source>Draw</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>Back to ink</source>
        <translation>Zurück zur Tinte</translation>
    </message>
    <message>
        <source>Convert to %1</source>
        <translation>Deuten als %1</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Verdoppeln</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
</context>
<context>
    <name>SketchSession</name>
    <message>
        <source>The editor is gone. The sketch is kept.</source>
        <translation>Das Zeichenprogramm ist gegangen. Die Skizze bleibt erhalten.</translation>
    </message>
    <message>
        <source>The answer before is still on its way to the editor.</source>
        <translation>Die vorige Antwort ist noch auf dem Weg zum Zeichenprogramm.</translation>
    </message>
    <message>
        <source>No editor waits for the sketch. Choose Start VANT in the editor, and send it then.</source>
        <translation>Kein Zeichenprogramm wartet auf die Skizze. Wählen Sie dort „Start VANT“, und senden Sie sie dann.</translation>
    </message>
    <message>
        <source>The sketch could not be sent: the editor is gone. It is kept.</source>
        <translation>Die Skizze konnte nicht gesendet werden: das Zeichenprogramm ist gegangen. Sie bleibt erhalten.</translation>
    </message>
    <message>
        <source>Nothing was drawn: the editor has got an empty figure.</source>
        <translation>Nichts wurde gezeichnet: das Zeichenprogramm hat eine leere Figur bekommen.</translation>
    </message>
    <message numerus="yes">
        <source>Sent: the editor has %n stroke(s).</source>
        <translation>
            <numerusform>Gesendet: das Zeichenprogramm hat %n Strich.</numerusform>
            <numerusform>Gesendet: das Zeichenprogramm hat %n Striche.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancelled: the editor has got an empty figure. The sketch is kept.</source>
        <translation>Abgebrochen: das Zeichenprogramm hat eine leere Figur bekommen. Die Skizze bleibt erhalten.</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfügen</translation>
    </message>
</context>
<context>
    <name>SnapNames</name>
    <message>
        <source>end</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>corner</source>
        <translation>Ecke</translation>
    </message>
    <message>
        <source>centre</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>intersection</source>
        <translation>Schnittpunkt</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>grid crossing</source>
        <translation>Rasterkreuzung</translation>
    </message>
</context>
<context>
    <name>StatusPanel</name>
    <message>
        <source>Snapped to</source>
        <translation>Eingerastet an</translation>
    </message>
    <message>
        <source>Pointer on the sheet</source>
        <translation>Zeiger auf dem Blatt</translation>
    </message>
    <message>
        <source>Scale and turn of the sheet</source>
        <translation>Maßstab und Drehung des Blatts</translation>
    </message>
    <message>
        <source>snaps: %1</source>
        <translation>rastet ein: %1</translation>
    </message>
    <message>
        <source>%1? Enter takes it, Tab shows another, Escape keeps the stroke as it is.</source>
        <translation>%1? Eingabe übernimmt, Tab zeigt anderes, Esc lässt den Strich, wie er ist.</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>Tools</name>
    <message>
        <source>Draw it: the stroke becomes it a moment after, or with Enter. Esc keeps the ink.</source>
        <translation>Zeichnen Sie es: der Strich wird gleich danach dazu, oder mit der Eingabetaste. Esc behält die Tinte.</translation>
    </message>
    <message>
        <source>&amp;Pen</source>
        <translation>&amp;Stift</translation>
    </message>
    <message>
        <source>Draw. Hold still at the end, and the stroke becomes what was meant; Tab asks as well.</source>
        <translation>Zeichnen Sie. Wer am Ende stillhält, bekommt das Gemeinte; Tab fragt auch danach.</translation>
    </message>
    <message>
        <source>&amp;Line</source>
        <translation>&amp;Linie</translation>
    </message>
    <message>
        <source>Pol&amp;yline</source>
        <translation>Linien&amp;zug</translation>
    </message>
    <message>
        <source>Tria&amp;ngle</source>
        <translation>&amp;Dreieck</translation>
    </message>
    <message>
        <source>&amp;Rectangle</source>
        <translation>&amp;Rechteck</translation>
    </message>
    <message>
        <source>Poly&amp;gon</source>
        <translation>&amp;Vieleck</translation>
    </message>
    <message>
        <source>&amp;Circle</source>
        <translation>&amp;Kreis</translation>
    </message>
    <message>
        <source>&amp;Arc</source>
        <translation>&amp;Bogen</translation>
    </message>
    <message>
        <source>&amp;Ellipse</source>
        <translation>&amp;Ellipse</translation>
    </message>
    <message>
        <source>Ell&amp;iptic Arc</source>
        <translation>Ell&amp;iptischer Bogen</translation>
    </message>
    <message>
        <source>&amp;Free Curve</source>
        <translation>&amp;Freie Kurve</translation>
    </message>
    <message>
        <source>Eraser</source>
        <translation>Radiergummi</translation>
    </message>
    <message>
        <source>Draw across strokes: they go, whole. Undo brings them back.</source>
        <translation>Ziehen Sie über Striche: sie verschwinden ganz. „Rückgängig“ bringt sie zurück.</translation>
    </message>
    <message>
        <source>&amp;Select</source>
        <translation>Aus&amp;wahl</translation>
    </message>
    <message>
        <source>Click a stroke, or drag around several; drag them to move, Delete takes them away.</source>
        <translation>Klicken Sie einen Strich an, oder ziehen Sie um mehrere herum; Ziehen verschiebt sie, Entf löscht sie.</translation>
    </message>
    <message>
        <source>&amp;Hand</source>
        <translation>&amp;Hand</translation>
    </message>
    <message>
        <source>Drag the sheet.</source>
        <translation>Ziehen Sie das Blatt.</translation>
    </message>
</context>
</TS>
