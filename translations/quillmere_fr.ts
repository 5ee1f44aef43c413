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
    <message id="DocumentViewColumnURL">
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message id="DocumentViewColumnTitle">
        <source>Title</source>
        <translation>Titre</translation>
    </message>
    <message id="DocumentViewColumnDepth">
        <source>Depth</source>
        <translation>Profondeur</translation>
    </message>
    <message id="DocumentViewColumnReceived">
        <source>Links received</source>
        <translation>Liens reçus</translation>
    </message>
    <message id="DocumentViewColumnLinksOut">
        <source>Links sent</source>
        <translation>Liens émis</translation>
    </message>
    <message id="DocumentViewColumnWeight">
        <source>Weight</source>
        <translation>Poids</translation>
    </message>
    <message id="LinkViewColumnAnchor">
        <source>Anchor</source>
        <translation>Ancre</translation>
    </message>
    <message id="LinkViewColumnURL">
        <source>Linking page</source>
        <translation>Page qui fait le lien</translation>
    </message>
    <message id="LinkViewColumnDepth">
        <source>Depth</source>
        <translation>Profondeur</translation>
    </message>
    <message id="LinkViewColumnLinksOut">
        <source>Links sent</source>
        <translation>Liens émis</translation>
    </message>
</context>
</TS>
