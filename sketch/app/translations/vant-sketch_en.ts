<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>LinkPanel</name>
    <message numerus="yes">
        <source>The editor has been waiting since %1, for %n minute(s).</source>
        <translation>
            <numerusform>The editor has been waiting since %1, for %n minute.</numerusform>
            <numerusform>The editor has been waiting since %1, for %n minutes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n other editor(s) wait their turn.</source>
        <translation>
            <numerusform>%n other editor waits its turn.</numerusform>
            <numerusform>%n other editors wait their turn.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Questions</name>
    <message numerus="yes">
        <source>The sketch&apos;s file was damaged: %n stroke(s) could be read. The file as it was is kept as %1.</source>
        <translation>
            <numerusform>The sketch&apos;s file was damaged: %n stroke could be read. The file as it was is kept as %1.</numerusform>
            <numerusform>The sketch&apos;s file was damaged: %n strokes could be read. The file as it was is kept as %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>A sketch of %1 with %n stroke(s) was not finished.</source>
        <translation>
            <numerusform>A sketch of %1 with %n stroke was not finished.</numerusform>
            <numerusform>A sketch of %1 with %n strokes was not finished.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, %n stroke(s)</source>
        <translation>
            <numerusform>%1, %n stroke</numerusform>
            <numerusform>%1, %n strokes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SketchSession</name>
    <message numerus="yes">
        <source>Sent: the editor has %n stroke(s).</source>
        <translation>
            <numerusform>Sent: the editor has %n stroke.</numerusform>
            <numerusform>Sent: the editor has %n strokes.</numerusform>
        </translation>
    </message>
</context>
</TS>
