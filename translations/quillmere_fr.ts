<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>Quillmere</name>
    <message id="Error404">
        <source>Error 404</source>
        <translation>Erreur 404 ou contenu non HTML</translation>
    </message>
    <message id="ErrorContentType">
        <source>No usable HTML content</source>
        <translation>Erreur 404 ou contenu non HTML</translation>
    </message>
</context>
</TS>
