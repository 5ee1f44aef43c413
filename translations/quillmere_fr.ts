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
    <message id="MainViewAlertStartRestartMessageText">
        <source>This site was crawled completely. Crawl it again from scratch?</source>
        <translation>Ce site a déjà été analysé entièrement. Recommencer l'analyse depuis le début ?</translation>
    </message>
    <message id="MainViewAlertStartRestartDefaultButton">
        <source>Restart</source>
        <translation>Recommencer</translation>
    </message>
    <message id="MainViewAlertStartRestartAlternateButton">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="MainViewAlertStartContinueMessageText">
        <source>The last crawl of this site was interrupted. Continue it or start again from scratch?</source>
        <translation>La dernière analyse de ce site a été interrompue. La reprendre ou recommencer depuis le début ?</translation>
    </message>
    <message id="MainViewAlertStartContinueOtherButton">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="MainViewAlertStartContinueAlternateButton">
        <source>Continue</source>
        <translation>Reprendre</translation>
    </message>
    <message id="MainViewAlertStartContinueDefaultButton">
        <source>Restart</source>
        <translation>Recommencer</translation>
    </message>
    <message id="MainViewAlertDownloadErrorDefaultButton">
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message id="AppDelegateNewProject">
        <source>New project</source>
        <translation>Nouveau projet</translation>
    </message>
    <message id="AppDelegateOpenProject">
        <source>Open project</source>
        <translation>Ouvrir un projet</translation>
    </message>
    <message id="AppDelegateMenuItemAbout">
        <source>About Quillmere</source>
        <translation>À propos de Quillmere</translation>
    </message>
    <message id="AppDelegateMenuItemHideQuillmere">
        <source>Hide Quillmere</source>
        <translation>Masquer Quillmere</translation>
    </message>
    <message id="AppDelegateMenuItemHideOthers">
        <source>Hide others</source>
        <translation>Masquer les autres</translation>
    </message>
    <message id="AppDelegateMenuItemShowAll">
        <source>Show all</source>
        <translation>Tout afficher</translation>
    </message>
    <message id="AppDelegateMenuItemQuitQuillmere">
        <source>Quit Quillmere</source>
        <translation>Quitter Quillmere</translation>
    </message>
    <message id="AppDelegateMenuFile">
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message id="AppDelegateMenuItemNew">
        <source>New project…</source>
        <translation>Nouveau projet…</translation>
    </message>
    <message id="AppDelegateMenuItemOpen">
        <source>Open project…</source>
        <translation>Ouvrir un projet…</translation>
    </message>
    <message id="AppDelegateMenuItemOpenRecent">
        <source>Open recent</source>
        <translation>Ouvrir récent</translation>
    </message>
    <message id="AppDelegateMenuItemClose">
        <source>Close project</source>
        <translation>Fermer le projet</translation>
    </message>
    <message id="AppDelegateMenuEdit">
        <source>Edit</source>
        <translation>Édition</translation>
    </message>
    <message id="AppDelegateMenuItemCut">
        <source>Cut</source>
        <translation>Couper</translation>
    </message>
    <message id="AppDelegateMenuItemCopy">
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message id="AppDelegateMenuItemPaste">
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message id="AppDelegateMenuWindow">
        <source>Window</source>
        <translation>Fenêtre</translation>
    </message>
    <message id="AppDelegateMenuItemMinimize">
        <source>Minimize</source>
        <translation>Réduire</translation>
    </message>
    <message id="AppDelegateMenuItemZoom">
        <source>Zoom</source>
        <translation>Agrandir</translation>
    </message>
    <message id="AppDelegateMenuItemBringAllToFront">
        <source>Bring all to front</source>
        <translation>Tout ramener au premier plan</translation>
    </message>
    <message id="AppDelegateMenuHelp">
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message id="AppDelegateMenuItemHelp">
        <source>Quillmere help</source>
        <translation>Aide de Quillmere</translation>
    </message>
    <message id="AppDelegateErrorButtonOK">
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message id="Could not save changes while quitting. Quit anyway?">
        <source>Could not save changes while quitting. Quit anyway?</source>
        <translation>Les modifications n'ont pas pu être enregistrées. Quitter quand même ?</translation>
    </message>
    <message id="Quitting now will lose any changes you have made since the last successful save">
        <source>Quitting now will lose any changes you have made since the last successful save</source>
        <translation>Si vous quittez maintenant, les modifications faites depuis le dernier enregistrement réussi seront perdues</translation>
    </message>
    <message id="Quit anyway">
        <source>Quit anyway</source>
        <translation>Quitter quand même</translation>
    </message>
    <message id="Cancel">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="DocumentViewOpenURL">
        <source>Open in the browser</source>
        <translation>Ouvrir dans le navigateur</translation>
    </message>
    <message id="LinkViewOpenURL">
        <source>Open in the browser</source>
        <translation>Ouvrir dans le navigateur</translation>
    </message>
    <message id="ProgressViewBoxProgression">
        <source>Project</source>
        <translation>Projet</translation>
    </message>
    <message id="ProgressViewLabelNomProjet">
        <source>Project name:</source>
        <translation>Nom du projet :</translation>
    </message>
    <message id="ProgressViewLabelURLSite">
        <source>Site URL:</source>
        <translation>URL du site :</translation>
    </message>
    <message id="ProgressViewLabelStartDate">
        <source>Start:</source>
        <translation>Début :</translation>
    </message>
    <message id="ProgressViewLabelEndDate">
        <source>End:</source>
        <translation>Fin :</translation>
    </message>
    <message id="ProgressViewLabelPageAnalysees">
        <source>Pages analysed:</source>
        <translation>Pages analysées :</translation>
    </message>
    <message id="ProgressViewLabelDepth">
        <source>Depth:</source>
        <translation>Profondeur :</translation>
    </message>
    <message id="ProgressViewButtonLancer">
        <source>Start</source>
        <translation>Lancer</translation>
    </message>
    <message id="ProgressViewButtonFiltres">
        <source>Filters</source>
        <translation>Filtres</translation>
    </message>
    <message id="ProgressBoxProgression">
        <source>Crawl in progress</source>
        <translation>Analyse en cours</translation>
    </message>
    <message id="ProgressLabelPagesAnalysees">
        <source>Pages analysed:</source>
        <translation>Pages analysées :</translation>
    </message>
    <message id="ProgressLabelProfondeurMax">
        <source>Depth:</source>
        <translation>Profondeur :</translation>
    </message>
    <message id="ProgressLabelURLAttente">
        <source>URLs waiting:</source>
        <translation>URL en attente :</translation>
    </message>
    <message id="ProgressLabelURLEnCours">
        <source>Current URL:</source>
        <translation>URL en cours :</translation>
    </message>
    <message id="ProgressBoxActions">
        <source>Actions</source>
        <translation>Actions</translation>
    </message>
    <message id="ProgressButtonStop">
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message id="CreateProjectWindowTitle">
        <source>New project</source>
        <translation>Nouveau projet</translation>
    </message>
    <message id="CreateProjectBoxProject">
        <source>Project</source>
        <translation>Projet</translation>
    </message>
    <message id="CreateProjectLabelNomProject">
        <source>Project name:</source>
        <translation>Nom du projet :</translation>
    </message>
    <message id="CreateProjectLabelUrlSite">
        <source>Site URL:</source>
        <translation>URL du site :</translation>
    </message>
    <message id="CreateProjectBoxParametres">
        <source>Limits</source>
        <translation>Paramètres</translation>
    </message>
    <message id="CreateProjectLabelProfondeurMax">
        <source>Maximum depth:</source>
        <translation>Profondeur maximale :</translation>
    </message>
    <message id="CreateProjectLabelNombreMaxScan">
        <source>Maximum pages:</source>
        <translation>Nombre maximal de pages analysées :</translation>
    </message>
    <message id="CreateProjectPlaceHolderProfondeurMax">
        <source>empty: no limit</source>
        <translation>vide : pas de limite</translation>
    </message>
    <message id="CreateProjectPlaceHolderNombreMaxScan">
        <source>empty: no limit</source>
        <translation>vide : pas de limite</translation>
    </message>
    <message id="CreateProjectButtonValider">
        <source>Create</source>
        <translation>Valider</translation>
    </message>
    <message id="CreateProjectButtonAnnuler">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="CreateProjectErrorEmptyURL">
        <source>Enter the site's address, such as https://www.example.com.</source>
        <translation>Indiquez l'adresse du site, par exemple https://www.exemple.fr.</translation>
    </message>
    <message id="OpenProjectWindowTitle">
        <source>Open a project</source>
        <translation>Ouvrir un projet</translation>
    </message>
    <message id="OpenProjectColumnProjectName">
        <source>Project</source>
        <translation>Projet</translation>
    </message>
    <message id="OpenProjectColumnURL">
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message id="OpenProjectColumnCreationDate">
        <source>Created</source>
        <translation>Date de création</translation>
    </message>
    <message id="OpenProjectButtonValider">
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message id="OpenProjectButtonAnnuler">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="OpenProjectDeleteProject">
        <source>Delete the project</source>
        <translation>Supprimer le projet</translation>
    </message>
    <message id="PageFilterWindowTitle">
        <source>Filters</source>
        <translation>Filtres</translation>
    </message>
    <message id="PageFilterBox404">
        <source>Not found</source>
        <translation>Pages introuvables</translation>
    </message>
    <message id="PageFilterCheck404">
        <source>Pages answered 404</source>
        <translation>Pages en erreur 404</translation>
    </message>
    <message id="PageFilterRadio404All">
        <source>All types</source>
        <translation>Tous types</translation>
    </message>
    <message id="PageFilterRadio404OnlyHTML">
        <source>HTML only</source>
        <translation>HTML uniquement</translation>
    </message>
    <message id="PageFilterRadio404NotHTML">
        <source>Not HTML</source>
        <translation>Autres que HTML</translation>
    </message>
    <message id="PageFilterBoxNoIndex">
        <source>Indexing</source>
        <translation>Indexation</translation>
    </message>
    <message id="PageFilterCheckNoIndex">
        <source>Pages marked noindex</source>
        <translation>Pages en noindex</translation>
    </message>
    <message id="PageFilterBoxCanonical">
        <source>Canonical</source>
        <translation>Canonique</translation>
    </message>
    <message id="PageFilterCheckCanonical">
        <source>Pages with a canonical link</source>
        <translation>Pages avec un lien canonical</translation>
    </message>
    <message id="PageFilterButtonValider">
        <source>Apply</source>
        <translation>Valider</translation>
    </message>
    <message id="PageFilterButtonAnnuler">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
</TS>
