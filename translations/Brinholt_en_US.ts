<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>main</name>
    <message>
        <source>Brinholt</source>
        <translation>Brinholt</translation>
    </message>
</context>
</TS>
