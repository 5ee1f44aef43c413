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
        <translation>Pages avec un lien canonique</translation>
    </message>
    <message id="PageFilterButtonValider">
        <source>Apply</source>
        <translation>Valider</translation>
    </message>
    <message id="PageFilterButtonAnnuler">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="DocumentsListTitleAll">
        <source>%1 documents listed</source>
        <translation>%1 documents référencés</translation>
    </message>
    <message id="DocumentsListTitle404All">
        <source>%1 documents in 404, all types, listed</source>
        <translation>%1 documents en 404 tous types référencés</translation>
    </message>
    <message id="DocumentsListTitle404Html">
        <source>%1 documents in 404 of type HTML listed</source>
        <translation>%1 documents en 404 de type HTML référencés</translation>
    </message>
    <message id="DocumentsListTitle404Other">
        <source>%1 documents in 404 not of type HTML listed</source>
        <translation>%1 documents en 404 non HTML référencés</translation>
    </message>
    <message id="DocumentsListTitleNoIndex">
        <source>%1 noindex documents listed</source>
        <translation>%1 documents en noindex référencés</translation>
    </message>
    <message id="DocumentsListTitleCanonical">
        <source>%1 canonical documents listed</source>
        <translation>%1 documents canonisés référencés</translation>
    </message>
    <message id="LinksListTitle">
        <source>%1 links to the selected document</source>
        <translation>%1 liens vers le document sélectionné</translation>
    </message>
    <message id="CliColumnStatus">
        <source>Status</source>
        <translation>Statut</translation>
    </message>
    <message id="CliColumnResponseMs">
        <source>Time (ms)</source>
        <translation>Temps (ms)</translation>
    </message>
    <message id="CliColumnError">
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message id="CliColumnBrokenURL">
        <source>Broken URL</source>
        <translation>URL cassée</translation>
    </message>
    <message id="CliColumnRedirectURL">
        <source>Redirecting URL</source>
        <translation>URL redirigée</translation>
    </message>
    <message id="CliColumnHops">
        <source>Hops</source>
        <translation>Sauts</translation>
    </message>
    <message id="CliColumnChain">
        <source>Chain</source>
        <translation>Chaîne</translation>
    </message>
    <message id="CliColumnFinalURL">
        <source>Final URL</source>
        <translation>URL finale</translation>
    </message>
    <message id="CliBrokenTitle">
        <source>Broken URLs: %1, links to them: %2</source>
        <translation>URL cassées : %1, liens vers elles : %2</translation>
    </message>
    <message id="CliRedirectsTitle">
        <source>Redirecting URLs: %1, links to them: %2</source>
        <translation>URL redirigées : %1, liens vers elles : %2</translation>
    </message>
    <message id="CliBrokenSummary">
        <source>list the broken targets (4xx, 5xx, transfer errors), each with the pages that link to it</source>
        <translation>liste les cibles cassées (4xx, 5xx, erreurs de transfert), chacune avec les pages qui y mènent</translation>
    </message>
    <message id="CliBrokenDetails">
        <source>Every URL of the crawl whose last fetch answered 4xx or 5xx or failed (timeout, refused,
dns, too-many-redirects, bad-url, error), with its status and, on one row each, every page
that links to it and the link&apos;s anchor. A page refused only for its type (not HTML) or its
size (over 1 MiB) answered and is not broken. JSON gives one object per URL with its
&quot;linkedFrom&quot; list.
</source>
        <translation>Chaque URL de l&apos;analyse dont la dernière requête a répondu 4xx ou 5xx ou a échoué (timeout,
refused, dns, too-many-redirects, bad-url, error), avec son statut et, une ligne chacune,
chaque page qui y mène avec l&apos;ancre du lien. Une page refusée seulement pour son type (pas
HTML) ou sa taille (plus de 1 Mio) a répondu et n&apos;est pas cassée. En JSON, un objet par URL
avec sa liste &quot;linkedFrom&quot;.
</translation>
    </message>
    <message id="CliRedirectsSummary">
        <source>list the redirecting URLs: their chain, final target, and the pages that link to them</source>
        <translation>liste les URL redirigées : leur chaîne, leur cible finale et les pages qui y mènent</translation>
    </message>
    <message id="CliRedirectsDetails">
        <source>Every URL of the crawl whose last fetch followed redirects: the number of hops, the chain
(each URL with its status, the last with the final answer), the final URL and its status,
and on one row each the pages that link to the redirecting URL, with the anchor. JSON
gives one object per URL with its &quot;chain&quot; and &quot;linkedFrom&quot; lists.
</source>
        <translation>Chaque URL de l&apos;analyse dont la dernière requête a suivi des redirections : le nombre de
sauts, la chaîne (chaque URL avec son statut, la dernière avec la réponse finale), l&apos;URL
finale et son statut, et une ligne par page qui mène à l&apos;URL redirigée, avec l&apos;ancre. En
JSON, un objet par URL avec ses listes &quot;chain&quot; et &quot;linkedFrom&quot;.
</translation>
    </message>
    <message id="CliSitemapSummary">
        <source>write a sitemap.xml of the pages a search engine may index</source>
        <translation>écrit un sitemap.xml des pages qu&apos;un moteur de recherche peut indexer</translation>
    </message>
    <message id="CliSitemapDetails">
        <source>The analysed pages of the project&apos;s own server (scheme, host and port of its URL) that
answered 200 with HTML and are neither noindex nor canonical elsewhere, in the sitemaps.org
0.9 format, on standard output or in FILE.
  -o FILE      write FILE; past 50,000 URLs (or 50 MiB) FILE becomes a sitemap index and
               the URLs go to FILE-1.xml, FILE-2.xml... beside it (FILE without its
               extension), named in the index under the root of the site: put them there
Without -o, a site of more than 50,000 such pages is refused (exit status 2).
</source>
        <translation>Les pages analysées du serveur du projet (schéma, hôte et port de son URL) qui ont répondu
200 en HTML et ne sont ni noindex ni canonical ailleurs, au format sitemaps.org 0.9, sur la
sortie standard ou dans FILE.
  -o FILE      écrit FILE ; au-delà de 50 000 URL (ou 50 Mio) FILE devient un index de
               sitemaps et les URL vont dans FILE-1.xml, FILE-2.xml... à côté (FILE sans son
               extension), nommés dans l&apos;index à la racine du site : placez-les là
Sans -o, un site de plus de 50 000 de ces pages est refusé (code de sortie 2).
</translation>
    </message>
    <message id="CliSitemapWrote">
        <source>Wrote %1 URLs to %2</source>
        <translation>%1 URL écrites dans %2</translation>
    </message>
    <message id="CliSitemapWroteIndex">
        <source>Wrote %1 URLs: the index %2 and %3 sitemap files beside it</source>
        <translation>%1 URL écrites : l&apos;index %2 et %3 fichiers sitemap à côté</translation>
    </message>
    <message id="CliSitemapNeedsFile">
        <source>%1 URLs do not fit in one sitemap (%2 at most): give -o FILE to write an index and its files</source>
        <translation>%1 URL ne tiennent pas dans un sitemap (%2 au plus) : donnez -o FILE pour écrire un index et ses fichiers</translation>
    </message>
    <message id="CliSitemapCannotWrite">
        <source>cannot write %1: %2</source>
        <translation>impossible d&apos;écrire %1 : %2</translation>
    </message>
    <message id="CliErrorUnreadableDatabase">
        <source>the crawl database of &apos;%1&apos; cannot be read</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; ne peut pas être lue</translation>
    </message>
    <message id="CliErrorBadFormat">
        <source>&apos;%1&apos; is not a format: table, csv, json or markdown</source>
        <translation>&apos;%1&apos; n&apos;est pas un format : table, csv, json ou markdown</translation>
    </message>
    <message id="CliErrorBadFilter">
        <source>&apos;%1&apos; is not a filter: %2</source>
        <translation>&apos;%1&apos; n&apos;est pas un filtre : %2</translation>
    </message>
    <message id="CliErrorBadColumn">
        <source>&apos;%1&apos; is not a column: %2</source>
        <translation>&apos;%1&apos; n&apos;est pas une colonne : %2</translation>
    </message>
    <message id="CliErrorEmptyURL">
        <source>the URL is empty</source>
        <translation>l&apos;URL est vide</translation>
    </message>
    <message id="CliErrorNoPageWithURL">
        <source>no page with the URL %1 in &apos;%2&apos;</source>
        <translation>aucune page d&apos;URL %1 dans &apos;%2&apos;</translation>
    </message>
    <message id="CliErrorBadPort">
        <source>--port wants a port number from 1 to 65535, not &apos;%1&apos;</source>
        <translation>--port attend un numéro de port de 1 à 65535, pas &apos;%1&apos;</translation>
    </message>
    <message id="CliErrorDemoPortBusy">
        <source>cannot serve the demo site on 127.0.0.1:%1 (is the port in use?)</source>
        <translation>impossible de servir le site de démonstration sur 127.0.0.1:%1 (le port est-il occupé ?)</translation>
    </message>
    <message id="CliErrorDemoCannotServe">
        <source>cannot serve the demo site on 127.0.0.1</source>
        <translation>impossible de servir le site de démonstration sur 127.0.0.1</translation>
    </message>
    <message id="CliFailOnBroken">
        <source>%1 broken internal links (to %2 URLs) found: see &apos;quillmere broken NAME&apos;</source>
        <translation>%1 liens internes cassés (vers %2 URL) trouvés : voir &apos;quillmere broken NOM&apos;</translation>
    </message>
    <message id="CliFormatHelp">
        <source>  --format F   table (default), csv (RFC 4180: CRLF line ends, a header line of field names),
               json (an array of objects) or markdown (a table)
</source>
        <translation>  --format F   table (par défaut), csv (RFC 4180 : fins de ligne CRLF, une ligne d&apos;en-tête des
               noms de champs), json (un tableau d&apos;objets) ou markdown (un tableau)
</translation>
    </message>
    <message id="CliLimitNone">
        <source>none</source>
        <translation>aucune</translation>
    </message>
    <message id="CliFiltersTitle">
        <source>Filters:</source>
        <translation>Filtres :</translation>
    </message>
    <message id="CliFilter404All">
        <source>404, all types:</source>
        <translation>404, tous types :</translation>
    </message>
    <message id="CliFilter404Html">
        <source>404, HTML only:</source>
        <translation>404, HTML :</translation>
    </message>
    <message id="CliFilter404Other">
        <source>404, not HTML:</source>
        <translation>404, pas HTML :</translation>
    </message>
    <message id="CliFilterNoIndex">
        <source>noindex:</source>
        <translation>noindex :</translation>
    </message>
    <message id="CliFilterCanonical">
        <source>canonical:</source>
        <translation>canonisées :</translation>
    </message>
    <message id="CliTopTitle">
        <source>Top %1 pages by weight:</source>
        <translation>Les %1 pages les plus lourdes :</translation>
    </message>
    <message id="CliTopWeight">
        <source>WEIGHT</source>
        <translation>POIDS</translation>
    </message>
    <message id="CliTopIn">
        <source>IN</source>
        <translation>REÇUS</translation>
    </message>
    <message id="CliTopOut">
        <source>OUT</source>
        <translation>ÉMIS</translation>
    </message>
    <message id="CliTopDepth">
        <source>DEPTH</source>
        <translation>PROF.</translation>
    </message>
    <message id="CliShowSummary">
        <source>show a project, its last crawl and its counts</source>
        <translation>affiche un projet, sa dernière analyse et ses comptes</translation>
    </message>
    <message id="CliShowDetails">
        <source>Limits: a depth or page limit is tested before each page with &quot;more than&quot;, so each limit
lets one page past it be analysed. The start page is depth 1. Broken: the links found on
crawled pages whose target answered 4xx or 5xx or could not be fetched.
</source>
        <translation>Limites : une limite de profondeur ou de pages est testée avant chaque page avec « plus que »,
si bien que chaque limite laisse analyser une page de plus. La page de départ est à la
profondeur 1. Cassés : les liens trouvés sur les pages analysées dont la cible a répondu 4xx
ou 5xx ou n&apos;a pas pu être obtenue.
</translation>
    </message>
    <message id="CliShowProject">
        <source>Project:</source>
        <translation>Projet :</translation>
    </message>
    <message id="CliShowURL">
        <source>URL:</source>
        <translation>URL :</translation>
    </message>
    <message id="CliShowCreated">
        <source>Created:</source>
        <translation>Créé le :</translation>
    </message>
    <message id="CliShowLimits">
        <source>Limits:</source>
        <translation>Limites :</translation>
    </message>
    <message id="CliShowLimitsValue">
        <source>depth %1, pages %2</source>
        <translation>profondeur %1, pages %2</translation>
    </message>
    <message id="CliShowLastCrawl">
        <source>Last crawl:</source>
        <translation>Dernière analyse :</translation>
    </message>
    <message id="CliShowFromTo">
        <source>%1 to %2</source>
        <translation>du %1 au %2</translation>
    </message>
    <message id="CliShowPagesCrawled">
        <source>Pages crawled:</source>
        <translation>Pages analysées :</translation>
    </message>
    <message id="CliShowPagesKnown">
        <source>Pages known:</source>
        <translation>Pages connues :</translation>
    </message>
    <message id="CliShowDatabase">
        <source>Database:</source>
        <translation>Base :</translation>
    </message>
    <message id="CliReportTitle">
        <source>Crawl of &apos;%1&apos; (%2)</source>
        <translation>Analyse de &apos;%1&apos; (%2)</translation>
    </message>
    <message id="CliReportStopped">
        <source>: stopped</source>
        <translation> : arrêtée</translation>
    </message>
    <message id="CliReportEndedOnError">
        <source>: ended on an error</source>
        <translation> : terminée sur une erreur</translation>
    </message>
    <message id="CliReportPagesAnalysed">
        <source>Pages analysed:</source>
        <translation>Pages analysées :</translation>
    </message>
    <message id="CliReportPagesValue">
        <source>%1 (this run: %2)</source>
        <translation>%1 (cette fois : %2)</translation>
    </message>
    <message id="CliReportDeepest">
        <source>Deepest depth:</source>
        <translation>Profondeur max. :</translation>
    </message>
    <message id="CliReportDuration">
        <source>Duration:</source>
        <translation>Durée :</translation>
    </message>
    <message id="CliReportDurationValue">
        <source>%1 s (%2 pages/s)</source>
        <translation>%1 s (%2 pages/s)</translation>
    </message>
    <message id="CliReportQueue">
        <source>Queue:</source>
        <translation>File :</translation>
    </message>
    <message id="CliReportQueueValue">
        <source>%1 done, %2 waiting</source>
        <translation>%1 faites, %2 en attente</translation>
    </message>
    <message id="CliReportBroken">
        <source>Broken links:</source>
        <translation>Liens cassés :</translation>
    </message>
    <message id="CliReportBrokenValue">
        <source>%1 (to %2 URLs)</source>
        <translation>%1 (vers %2 URL)</translation>
    </message>
    <message id="CliPagesSummary">
        <source>list the pages of a project: URL, title, depth, links received, links sent, weight, status, time</source>
        <translation>liste les pages d&apos;un projet : URL, titre, profondeur, liens reçus, liens émis, poids, statut, temps</translation>
    </message>
    <message id="CliPagesDetails">
        <source>  --filter F   all (default): the pages the desktop program&apos;s documents list shows, HTML pages
               that are neither noindex, nofollow nor canonical elsewhere; 404: pages without
               an HTML answer (error status, failed transfer, other type); 404-html,
               404-other: the same by the content type recorded; noindex; canonical: pages
               that name another URL as canonical
  --columns C,...  the columns, in this order (default: all but error): url; title; depth
               (the start page is depth 1); inLinkCount (links received); outLinkCount (links
               sent); weight (links received divided by depth, computed when a crawl ends);
               status (HTTP status of the page&apos;s last fetch, or its failure: timeout,
               refused, dns...); responseMs (that fetch&apos;s time in milliseconds); error (the
               failure&apos;s name, also for a page refused as not HTML or too large)
  --sort COLUMN[:desc]  ascending on a column, or descending with :desc (default: the
               order in which pages were found)
Rows are printed as they are read: a list of any size starts at once (the table format
waits for the last row to align its columns).
</source>
        <translation>  --filter F   all (par défaut) : les pages que montre la liste des documents du programme
               de bureau, pages HTML ni noindex, ni nofollow, ni canonical ailleurs ; 404 :
               pages sans réponse HTML (statut d&apos;erreur, transfert échoué, autre type) ;
               404-html, 404-other : les mêmes selon le type de contenu enregistré ; noindex ;
               canonical : pages qui désignent une autre URL comme canonique
  --columns C,...  les colonnes, dans cet ordre (par défaut : toutes sauf error) : url ;
               title ; depth (la page de départ est à la profondeur 1) ; inLinkCount (liens
               reçus) ; outLinkCount (liens émis) ; weight (liens reçus divisés par la
               profondeur, calculé à la fin d&apos;une analyse) ; status (statut HTTP de la
               dernière requête de la page, ou son échec : timeout, refused, dns...) ;
               responseMs (durée de cette requête en millisecondes) ; error (le nom de
               l&apos;échec, aussi pour une page refusée comme non HTML ou trop grande)
  --sort COLUMN[:desc]  tri croissant sur une colonne, ou décroissant avec :desc (par
               défaut : l&apos;ordre dans lequel les pages ont été trouvées)
Les lignes sont écrites à mesure qu&apos;elles sont lues : une liste de toute taille commence
aussitôt (le format table attend la dernière ligne pour aligner ses colonnes).
</translation>
    </message>
    <message id="CliLinksSummary">
        <source>list the pages that link to the page at URL, with their anchors</source>
        <translation>liste les pages qui mènent à la page d&apos;URL donnée, avec leurs ancres</translation>
    </message>
    <message id="CliLinksDetails">
        <source>URL may be typed with its escapes (%20, %C3%A9) or without them, and with or without a
trailing &quot;/&quot;.
</source>
        <translation>L&apos;URL peut être tapée avec ses séquences d&apos;échappement (%20, %C3%A9) ou sans, et avec ou
sans &quot;/&quot; final.
</translation>
    </message>
    <message id="CliLinksTitle">
        <source>%1 links to %2</source>
        <translation>%1 liens vers %2</translation>
    </message>
    <message id="CliDemoSummary">
        <source>serve the built-in demo site on 127.0.0.1 and crawl it as project &apos;demo&apos;</source>
        <translation>sert le site de démonstration intégré sur 127.0.0.1 et l&apos;analyse comme projet &apos;demo&apos;</translation>
    </message>
    <message id="CliDemoDetails">
        <source>Creates the project &apos;demo&apos; (or restarts it), crawls the site, prints the report and stops
the server. Then try: quillmere pages demo --filter 404, quillmere broken demo.
  --port N     serve on port N (default: a free port)
</source>
        <translation>Crée le projet &apos;demo&apos; (ou le recommence), analyse le site, affiche le rapport et arrête le
serveur. Essayez ensuite : quillmere pages demo --filter 404, quillmere broken demo.
  --port N     sert sur le port N (par défaut : un port libre)
</translation>
    </message>
    <message id="CliDemoServed">
        <source>Demo site served at %1</source>
        <translation>Site de démonstration servi sur %1</translation>
    </message>
    <message id="CliWhyNothingTitle">
        <source>Nothing was analysed.</source>
        <translation>Rien n&apos;a été analysé.</translation>
    </message>
    <message id="CliWhyNotFetched">
        <source>The start page %1 was not fetched in this crawl (stopped, or crawled by an older version).
Next: quillmere crawl %2 --restart</source>
        <translation>La page de départ %1 n&apos;a pas été demandée lors de cette analyse (arrêtée, ou faite par une
version plus ancienne).
Ensuite : quillmere crawl %2 --restart</translation>
    </message>
    <message id="CliWhyTransferFailed">
        <source>The start page %1 could not be fetched (%2).
Next: check that the server runs and answers at that address; a slow one needs a longer --timeout.</source>
        <translation>La page de départ %1 n&apos;a pas pu être obtenue (%2).
Ensuite : vérifiez que le serveur tourne et répond à cette adresse ; un serveur lent demande un --timeout plus long.</translation>
    </message>
    <message id="CliWhyErrorStatus">
        <source>The start page %1 answered with the status %2.
Next: check the project&apos;s URL (quillmere show NAME) and the server.</source>
        <translation>La page de départ %1 a répondu avec le statut %2.
Ensuite : vérifiez l&apos;URL du projet (quillmere show NOM) et le serveur.</translation>
    </message>
    <message id="CliWhyRedirected">
        <source>The start page %1 redirects to another host: %2. Pages of another host are not crawled.
Next: create a project with that URL (quillmere new NAME %2).</source>
        <translation>La page de départ %1 redirige vers un autre hôte : %2. Les pages d&apos;un autre hôte ne sont pas analysées.
Ensuite : créez un projet avec cette URL (quillmere new NOM %2).</translation>
    </message>
    <message id="CliWhyNotHtml">
        <source>The start page %1 is not HTML (%2).
Next: give the project the URL of an HTML page.</source>
        <translation>La page de départ %1 n&apos;est pas du HTML (%2).
Ensuite : donnez au projet l&apos;URL d&apos;une page HTML.</translation>
    </message>
    <message id="CliWhyTooLarge">
        <source>The start page %1 is larger than 1 MiB, the most a page may weigh.
Next: start from a smaller page.</source>
        <translation>La page de départ %1 dépasse 1 Mio, le poids maximal d&apos;une page.
Ensuite : partez d&apos;une page plus petite.</translation>
    </message>
    <message id="CliWhyCanonical">
        <source>The start page %1 declares another canonical URL: %2. A page that names another URL as
canonical is not analysed and its links are not followed.
Next: crawl the canonical site (quillmere new NAME %2), or start from a page that does not
declare one.</source>
        <translation>La page de départ %1 déclare une autre URL canonique : %2. Une page qui désigne une autre
URL comme canonique n&apos;est pas analysée et ses liens ne sont pas suivis.
Ensuite : analysez le site canonique (quillmere new NOM %2), ou partez d&apos;une page qui n&apos;en
déclare pas.</translation>
    </message>
    <message id="CliWhyNoIndexNoFollow">
        <source>The start page %1 is marked noindex and nofollow (robots meta tag): it is not analysed and
its links are not followed.
Next: start from another page of the site.</source>
        <translation>La page de départ %1 est marquée noindex et nofollow (balise meta robots) : elle n&apos;est pas
analysée et ses liens ne sont pas suivis.
Ensuite : partez d&apos;une autre page du site.</translation>
    </message>
    <message id="CliWhyNoIndexOrCanonical">
        <source>The start page %1 is marked noindex and nofollow, or declares another canonical URL: it
is not analysed and its links are not followed.
Next: start from another page of the site.</source>
        <translation>La page de départ %1 est marquée noindex et nofollow, ou déclare une autre URL canonique :
elle n&apos;est pas analysée et ses liens ne sont pas suivis.
Ensuite : partez d&apos;une autre page du site.</translation>
    </message>
    <message id="CliWhyNotParsed">
        <source>The start page %1 could not be read as HTML.
Next: check the page&apos;s markup.</source>
        <translation>La page de départ %1 n&apos;a pas pu être lue comme du HTML.
Ensuite : vérifiez le balisage de la page.</translation>
    </message>
    <message id="CliErrorDamagedDatabase">
        <source>the crawl database of &apos;%1&apos; is damaged (%2): %3</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; est endommagée (%2) : %3</translation>
    </message>
    <message id="CliErrorNoProjectSee">
        <source>no project named &apos;%1&apos; (see &apos;quillmere projects&apos;)</source>
        <translation>aucun projet nommé &apos;%1&apos; (voir &apos;quillmere projects&apos;)</translation>
    </message>
    <message id="CliErrorDataDirNotWritable">
        <source>the data directory %1 cannot be written</source>
        <translation>le dossier de données %1 n&apos;est pas accessible en écriture</translation>
    </message>
    <message id="CliErrorDatabaseMissing">
        <source>the crawl database of &apos;%1&apos; is missing (%2)</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; est absente (%2)</translation>
    </message>
    <message id="CliErrorDatabaseCannotBeRead">
        <source>the crawl database of &apos;%1&apos; cannot be read (%2): %3</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; ne peut pas être lue (%2) : %3</translation>
    </message>
    <message id="CliErrorUnableToOpen">
        <source>unable to open it</source>
        <translation>impossible de l&apos;ouvrir</translation>
    </message>
    <message id="CliErrorFilesOutsideDataDir">
        <source>the project registry %1 is damaged: the files of the project &apos;%2&apos; would lie outside the data directory %3 (%4); nothing was done</source>
        <translation>le registre des projets %1 est endommagé : les fichiers du projet &apos;%2&apos; se trouveraient hors du dossier de données %3 (%4) ; rien n&apos;a été fait</translation>
    </message>
    <message id="CliErrorDatabaseNotWritten">
        <source>the crawl database of &apos;%1&apos; could not be written (%2): %3</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; n&apos;a pas pu être écrite (%2) : %3</translation>
    </message>
    <message id="CliNewSummary">
        <source>create a project for the site at URL</source>
        <translation>crée un projet pour le site situé à URL</translation>
    </message>
    <message id="CliNewDetails">
        <source>The URL must be http or https; surrounding blanks and one trailing &quot;/&quot; are dropped.
  --depth N   stop after the first page deeper than N: the start page is depth 1, and the
              limit lets one page past it be analysed (default: no limit)
  --pages N   stop after the first page past N pages (default: no limit)
</source>
        <translation>L&apos;URL doit être en http ou https ; les blancs qui l&apos;entourent et un « / » final sont retirés.
  --depth N   s&apos;arrête après la première page plus profonde que N : la page de départ est à la
              profondeur 1, et la limite laisse analyser une page de plus (par défaut : aucune)
  --pages N   s&apos;arrête après la première page au-delà de N pages (par défaut : aucune limite)
</translation>
    </message>
    <message id="CliProjectsSummary">
        <source>list the projects, oldest first</source>
        <translation>liste les projets, du plus ancien au plus récent</translation>
    </message>
    <message id="CliProjectsDetails">
        <source>Columns: name, URL, creation date, depth and page limits, pages and depth of the last crawl.
</source>
        <translation>Colonnes : nom, URL, date de création, limites de profondeur et de pages, pages et profondeur
de la dernière analyse.
</translation>
    </message>
    <message id="CliDeleteSummary">
        <source>delete a project with its database and logs</source>
        <translation>supprime un projet avec sa base et ses journaux</translation>
    </message>
    <message id="CliDeleteDetails">
        <source>A project that another process is crawling or vacuuming is not deleted (exit status 6).
</source>
        <translation>Un projet qu&apos;un autre processus analyse ou nettoie n&apos;est pas supprimé (code de sortie 6).
</translation>
    </message>
    <message id="CliErrorEmptyProjectName">
        <source>the project name is empty</source>
        <translation>le nom du projet est vide</translation>
    </message>
    <message id="CliErrorNameHasSeparator">
        <source>the project name &apos;%1&apos; holds a path separator</source>
        <translation>le nom de projet &apos;%1&apos; contient un séparateur de chemin</translation>
    </message>
    <message id="CliErrorNameNotFileName">
        <source>the project name &apos;%1&apos; is not a file name</source>
        <translation>le nom de projet &apos;%1&apos; n&apos;est pas un nom de fichier</translation>
    </message>
    <message id="CliErrorNotHttpURL">
        <source>&apos;%1&apos; is not an http or https URL</source>
        <translation>&apos;%1&apos; n&apos;est pas une URL http ou https</translation>
    </message>
    <message id="CliErrorURLNoHost">
        <source>the URL &apos;%1&apos; names no host</source>
        <translation>l&apos;URL &apos;%1&apos; ne nomme aucun hôte</translation>
    </message>
    <message id="CliErrorBadLimit">
        <source>&apos;%1&apos; is not a limit (a whole number, -1 for none)</source>
        <translation>&apos;%1&apos; n&apos;est pas une limite (un nombre entier, -1 pour aucune)</translation>
    </message>
    <message id="CliErrorProjectExists">
        <source>a project named &apos;%1&apos; exists already</source>
        <translation>un projet nommé &apos;%1&apos; existe déjà</translation>
    </message>
    <message id="CliErrorCannotCreateDatabase">
        <source>cannot create the crawl database of &apos;%1&apos; in %2</source>
        <translation>impossible de créer la base d&apos;analyse de &apos;%1&apos; dans %2</translation>
    </message>
    <message id="CliErrorCannotCreateFiles">
        <source>cannot create the files of the project &apos;%1&apos; in %2: %3 (%4)</source>
        <translation>impossible de créer les fichiers du projet &apos;%1&apos; dans %2 : %3 (%4)</translation>
    </message>
    <message id="CliErrorCannotSaveRegistry">
        <source>cannot save the project registry in %1</source>
        <translation>impossible d&apos;enregistrer le registre des projets dans %1</translation>
    </message>
    <message id="CliNewCreated">
        <source>Created project &apos;%1&apos; for %2 (depth limit %3, page limit %4)
</source>
        <translation>Projet &apos;%1&apos; créé pour %2 (limite de profondeur : %3, limite de pages : %4)
</translation>
    </message>
    <message id="CliErrorRegistryDamaged">
        <source>the project registry %1 is damaged: %2</source>
        <translation>le registre des projets %1 est endommagé : %2</translation>
    </message>
    <message id="CliErrorRegistryCannotBeRead">
        <source>the project registry %1 cannot be read: %2</source>
        <translation>le registre des projets %1 ne peut pas être lu : %2</translation>
    </message>
    <message id="CliNoProjects">
        <source>No projects.
</source>
        <translation>Aucun projet.
</translation>
    </message>
    <message id="CliProjectsColumnName">
        <source>NAME</source>
        <translation>NOM</translation>
    </message>
    <message id="CliProjectsColumnURL">
        <source>URL</source>
        <translation>URL</translation>
    </message>
    <message id="CliProjectsColumnCreated">
        <source>CREATED</source>
        <translation>CRÉÉ LE</translation>
    </message>
    <message id="CliProjectsColumnDepthLimit">
        <source>DEPTH LIMIT</source>
        <translation>LIMITE PROF.</translation>
    </message>
    <message id="CliProjectsColumnPageLimit">
        <source>PAGE LIMIT</source>
        <translation>LIMITE PAGES</translation>
    </message>
    <message id="CliProjectsColumnPages">
        <source>PAGES</source>
        <translation>PAGES</translation>
    </message>
    <message id="CliProjectsColumnDepth">
        <source>DEPTH</source>
        <translation>PROF.</translation>
    </message>
    <message id="CliErrorNoProject">
        <source>no project named &apos;%1&apos;</source>
        <translation>aucun projet nommé &apos;%1&apos;</translation>
    </message>
    <message id="CliDeleted">
        <source>Deleted project &apos;%1&apos;
</source>
        <translation>Projet &apos;%1&apos; supprimé
</translation>
    </message>
    <message id="CliCheckSummary">
        <source>check that a project&apos;s crawl database is sound</source>
        <translation>vérifie que la base d&apos;analyse d&apos;un projet est saine</translation>
    </message>
    <message id="CliCheckDetails">
        <source>Checks, without changing anything: the file&apos;s integrity; that each page&apos;s links-received
count equals the links recorded to it; that no URL has two pages (a trailing &quot;/&quot; aside);
that every link joins two pages; that every analysed page has its queue entry done;
that every done entry left its page or its answer, or was a redirect; and that the
project&apos;s page count and depth agree with the queue (not while a crawl runs).
It may run during a crawl. Exit status: 0 sound, 5 something is wrong, 2 bad input
(unknown project; a database that cannot be read, or so damaged that reading it fails).
</source>
        <translation>Vérifie, sans rien modifier : l&apos;intégrité du fichier ; que le nombre de liens reçus de chaque
page égale les liens enregistrés vers elle ; qu&apos;aucune URL n&apos;a deux pages (à un « / » final
près) ; que chaque lien relie deux pages ; que chaque page analysée a son entrée de file
terminée ; que chaque entrée terminée a laissé sa page ou sa réponse, ou était une
redirection ; et que le nombre de pages et la profondeur du projet concordent avec la file
(pas pendant une analyse). La vérification peut se faire pendant une analyse.
Code de sortie : 0 saine, 5 quelque chose ne va pas, 2 entrée incorrecte (projet inconnu ;
base illisible, ou si endommagée que sa lecture échoue).
</translation>
    </message>
    <message id="CliCheckHeader">
        <source>Checking &apos;%1&apos; (%2)
</source>
        <translation>Vérification de &apos;%1&apos; (%2)
</translation>
    </message>
    <message id="CliCheckInUse">
        <source>  (in use by %1: its page count and depth are not checked)
</source>
        <translation>  (utilisé par %1 : son nombre de pages et sa profondeur ne sont pas vérifiés)
</translation>
    </message>
    <message id="CliCheckOk">
        <source>ok</source>
        <translation>ok</translation>
    </message>
    <message id="CliCheckFail">
        <source>FAIL</source>
        <translation>ÉCHEC</translation>
    </message>
    <message id="CliCheckMore">
        <source>... and %1 more</source>
        <translation>... et %1 de plus</translation>
    </message>
    <message id="CliCheckNote">
        <source>note: %1</source>
        <translation>remarque : %1</translation>
    </message>
    <message id="CliCheckSound">
        <source>Sound: all %1 checks hold.
</source>
        <translation>Saine : les %1 vérifications sont satisfaites.
</translation>
    </message>
    <message id="CliCheckNotSound">
        <source>Not sound: %1 of %2 checks fail.
</source>
        <translation>Pas saine : %1 vérifications sur %2 échouent.
</translation>
    </message>
    <message id="CheckCannotRead">
        <source>cannot be read: %1</source>
        <translation>illisible : %1</translation>
    </message>
    <message id="CheckIntegrityTitle">
        <source>integrity: the library&apos;s own check of the file (pragma integrity_check)</source>
        <translation>intégrité : la vérification du fichier par la bibliothèque elle-même (pragma integrity_check)</translation>
    </message>
    <message id="CheckLinksReceivedProblem">
        <source>%1: in_link_count %2, but %3 Links rows point to it</source>
        <translation>%1 : in_link_count %2, mais %3 lignes Links pointent vers elle</translation>
    </message>
    <message id="CheckLinksReceivedTitle">
        <source>links received: each page&apos;s in_link_count equals the Links rows that point to it (%1 pages)</source>
        <translation>liens reçus : l&apos;in_link_count de chaque page égale le nombre de lignes Links qui pointent vers elle (%1 pages)</translation>
    </message>
    <message id="CheckDuplicateURLProblem">
        <source>%1: %2 Page rows</source>
        <translation>%1 : %2 lignes Page</translation>
    </message>
    <message id="CheckSlashTwinProblem">
        <source>%1 and %2: two Page rows for one page</source>
        <translation>%1 et %2 : deux lignes Page pour une seule page</translation>
    </message>
    <message id="CheckOnePagePerURLTitle">
        <source>one page per URL: no two Page rows for one URL, nor for one URL with and without its trailing &quot;/&quot; (%1 pages)</source>
        <translation>une page par URL : pas deux lignes Page pour une même URL, ni pour une URL avec et sans son « / » final (%1 pages)</translation>
    </message>
    <message id="CheckDanglingLinkProblem">
        <source>link from page %1 to page %2 (&quot;%3&quot;): one of them is not a Page row</source>
        <translation>lien de la page %1 vers la page %2 (« %3 ») : l&apos;une des deux n&apos;est pas une ligne Page</translation>
    </message>
    <message id="CheckLinksBetweenPagesTitle">
        <source>links between pages: each Links row&apos;s source and target are Page rows (%1 links)</source>
        <translation>liens entre pages : la source et la cible de chaque ligne Links sont des lignes Page (%1 liens)</translation>
    </message>
    <message id="CheckAnalysedNotDoneProblem">
        <source>%1: analysed, but no queue entry for it is marked done</source>
        <translation>%1 : analysée, mais aucune de ses entrées de file n&apos;est marquée terminée</translation>
    </message>
    <message id="CheckAnalysedPagesTitle">
        <source>analysed pages: each page with a title has its queue entry marked done (%1 pages)</source>
        <translation>pages analysées : chaque page qui a un titre a son entrée de file marquée terminée (%1 pages)</translation>
    </message>
    <message id="CheckDoneNotReachedProblem">
        <source>%1: marked done, but neither its page nor its answer was recorded, and nothing was queued after it</source>
        <translation>%1 : marquée terminée, mais ni sa page ni sa réponse n&apos;ont été enregistrées, et rien n&apos;a été mis en file après elle</translation>
    </message>
    <message id="CheckDoneEntriesTitle">
        <source>done entries: each done queue entry has its page or its answer recorded, or was redirected (%1 done, %2 of them redirects)</source>
        <translation>entrées terminées : chaque entrée de file terminée a sa page ou sa réponse enregistrée, ou a été redirigée (%1 terminées, dont %2 redirections)</translation>
    </message>
    <message id="CheckPagesCountProblem">
        <source>pages_count %1 is not within the %2 queue entries</source>
        <translation>pages_count %1 n&apos;est pas compris dans les %2 entrées de file</translation>
    </message>
    <message id="CheckMaxDepthProblem">
        <source>max_depth %1 is not the depth of a queue entry (deepest %2)</source>
        <translation>max_depth %1 n&apos;est pas la profondeur d&apos;une entrée de file (la plus profonde : %2)</translation>
    </message>
    <message id="CheckPagesCountNote">
        <source>pages_count %1 is below the %2 analysed pages: it was saved before the last pages were (a crawl killed, or unable to write the registry)</source>
        <translation>pages_count %1 est inférieur aux %2 pages analysées : il a été enregistré avant les dernières pages (une analyse tuée, ou qui n&apos;a pas pu écrire le registre)</translation>
    </message>
    <message id="CheckCountersTitle">
        <source>counters: the project&apos;s pages_count (%1) at most its queue entries (%2), its max_depth (%3) at most their deepest (%4); %5 pages analysed</source>
        <translation>compteurs : le pages_count du projet (%1) au plus ses entrées de file (%2), son max_depth (%3) au plus la plus profonde d&apos;entre elles (%4) ; %5 pages analysées</translation>
    </message>
    <message id="CliErrorContinueRestart">
        <source>--continue and --restart exclude each other</source>
        <translation>--continue et --restart s&apos;excluent l&apos;un l&apos;autre</translation>
    </message>
    <message id="CliErrorFinishedContinue">
        <source>the last crawl of &apos;%1&apos; finished: nothing waits in its queue; use --restart to crawl it again from scratch</source>
        <translation>la dernière analyse de &apos;%1&apos; est terminée : rien n&apos;attend dans sa file ; utilisez --restart pour l&apos;analyser de nouveau depuis le début</translation>
    </message>
    <message id="CliAskRestart">
        <source>&apos;%1&apos; was crawled already and nothing waits in its queue. Restart from scratch? [y/N]</source>
        <translation>&apos;%1&apos; a déjà été analysé et rien n&apos;attend dans sa file. Recommencer depuis le début ? [o/N]</translation>
    </message>
    <message id="CliAnswersYes">
        <source>y,yes</source>
        <translation>o,oui,y,yes</translation>
    </message>
    <message id="CliAnswersContinue">
        <source>c,continue</source>
        <translation>c,continuer,continue</translation>
    </message>
    <message id="CliAnswersRestart">
        <source>r,restart</source>
        <translation>r,recommencer,restart</translation>
    </message>
    <message id="CliCrawlNotStarted">
        <source>crawl not started</source>
        <translation>analyse non démarrée</translation>
    </message>
    <message id="CliErrorAlreadyCrawled">
        <source>&apos;%1&apos; was crawled already and nothing waits in its queue; use --restart to crawl it again from scratch</source>
        <translation>&apos;%1&apos; a déjà été analysé et rien n&apos;attend dans sa file ; utilisez --restart pour l&apos;analyser de nouveau depuis le début</translation>
    </message>
    <message id="CliAskWaiting">
        <source>&apos;%1&apos; has %2 URLs waiting from an earlier crawl. [c]ontinue, [r]estart from scratch or [q]uit?</source>
        <translation>&apos;%1&apos; a %2 URL en attente d&apos;une analyse précédente. [c]ontinuer, [r]ecommencer depuis le début ou [q]uitter ?</translation>
    </message>
    <message id="CliErrorWaiting">
        <source>&apos;%1&apos; has %2 URLs waiting from an earlier crawl; use --continue to go on with them or --restart to start from scratch</source>
        <translation>&apos;%1&apos; a %2 URL en attente d&apos;une analyse précédente ; utilisez --continue pour les reprendre ou --restart pour recommencer depuis le début</translation>
    </message>
    <message id="CliErrorCrawlDatabaseNotWritten">
        <source>the crawl database %1 could not be written (%2)%3; the crawl stopped, &apos;crawl %4 --continue&apos; goes on from the last page saved</source>
        <translation>la base d&apos;analyse %1 n&apos;a pas pu être écrite (%2)%3 ; l&apos;analyse s&apos;est arrêtée, &apos;crawl %4 --continue&apos; reprend à partir de la dernière page enregistrée</translation>
    </message>
    <message id="CliDiskFull">
        <source>: the disk is full</source>
        <translation> : le disque est plein</translation>
    </message>
    <message id="CliCrawlSummary">
        <source>crawl a project&apos;s site, then print the report</source>
        <translation>analyse le site d&apos;un projet, puis affiche le rapport</translation>
    </message>
    <message id="CliCrawlDetails">
        <source>A project crawled before has pages: --continue goes on with the URLs still waiting, --restart
empties the database and starts again (on a terminal without either, you are asked).
  --timeout S  seconds a transfer may stay silent before it fails (default 1000)
  --max-transfer-time S  seconds a whole transfer may take, redirects included, before it
               fails as a time-out (default 300)
  --fail-on-broken  exit with status 4 when the crawl found broken internal links (links
               whose target answered 4xx or 5xx or could not be fetched; see &apos;broken NAME&apos;)
  --parallel N requests in flight at most (default 8): the next pages of the queue are
               fetched while one is analysed; pages are still analysed in queue order
               and the database is the same; 1 asks for one page at a time
  --max-rate R requests per second at most (default: no cap)
A busy server&apos;s 429 or 503 with a Retry-After of up to 60 s is waited for and asked
again (3 times at most).
Ctrl-C stops within a second; a page still downloading stays in the queue, nothing is
lost and the crawl can be continued.
Exit status: 0 done, 2 bad input, 3 the site&apos;s links do not match the project URL
(http/https or www.), 4 broken internal links (with --fail-on-broken), 6 another process
is crawling, vacuuming or deleting the project, 130 stopped.
</source>
        <translation>Un projet déjà analysé a des pages : --continue reprend les URL encore en attente, --restart
vide la base et recommence (sur un terminal, sans l&apos;une ni l&apos;autre, la question vous est posée).
  --timeout S  secondes pendant lesquelles un transfert peut rester muet avant d&apos;échouer
               (par défaut 1000)
  --max-transfer-time S  secondes que peut durer un transfert entier, redirections comprises,
               avant d&apos;échouer comme un dépassement de délai (par défaut 300)
  --fail-on-broken  sort avec le code 4 quand l&apos;analyse a trouvé des liens internes cassés
               (liens dont la cible a répondu 4xx ou 5xx ou n&apos;a pas pu être obtenue ; voir
               &apos;broken NOM&apos;)
  --parallel N requêtes en cours au plus (par défaut 8) : les pages suivantes de la file sont
               demandées pendant qu&apos;une autre est analysée ; les pages restent analysées
               dans l&apos;ordre de la file et la base est la même ; 1 demande une page à la fois
  --max-rate R requêtes par seconde au plus (par défaut : pas de plafond)
Un serveur occupé qui répond 429 ou 503 avec un Retry-After d&apos;au plus 60 s est attendu puis
interrogé de nouveau (3 fois au plus).
Ctrl-C arrête en moins d&apos;une seconde ; une page encore en téléchargement reste dans la file,
rien n&apos;est perdu et l&apos;analyse peut être reprise.
Codes de sortie : 0 terminé, 2 entrée incorrecte, 3 les liens du site ne correspondent pas à
l&apos;URL du projet (http/https ou www.), 4 liens internes cassés (avec --fail-on-broken),
6 un autre processus analyse, nettoie ou supprime le projet, 130 arrêté.
</translation>
    </message>
    <message id="CliCrawlURLSummary">
        <source>make a project for URL and crawl it once, without limits and without the vacuum</source>
        <translation>crée un projet pour URL et l&apos;analyse une fois, sans limites et sans le nettoyage</translation>
    </message>
    <message id="CliCrawlURLDetails">
        <source>  --name NAME  the project&apos;s name (default: the URL&apos;s host)
  --max-transfer-time S  seconds a whole transfer may take, redirects included, before it
               fails as a time-out (default 300)
</source>
        <translation>  --name NAME  le nom du projet (par défaut : l&apos;hôte de l&apos;URL)
  --max-transfer-time S  secondes que peut durer un transfert entier, redirections comprises,
               avant d&apos;échouer comme un dépassement de délai (par défaut 300)
</translation>
    </message>
    <message id="CliVacuumSummary">
        <source>take the links to non-HTML resources off the pages&apos; links-sent counts (again)</source>
        <translation>retire (de nouveau) les liens vers des ressources non HTML du nombre de liens émis des pages</translation>
    </message>
    <message id="CliErrorBadTimeout">
        <source>--timeout wants a number of seconds from 0.1 to 86400</source>
        <translation>--timeout attend un nombre de secondes de 0,1 à 86400</translation>
    </message>
    <message id="CliErrorBadParallel">
        <source>--parallel wants a number of requests from 1 to 64</source>
        <translation>--parallel attend un nombre de requêtes de 1 à 64</translation>
    </message>
    <message id="CliErrorBadMaxRate">
        <source>--max-rate wants a number of requests per second from 0.01 to 1000</source>
        <translation>--max-rate attend un nombre de requêtes par seconde de 0,01 à 1000</translation>
    </message>
    <message id="CliErrorProjectExistsChooseName">
        <source>a project named &apos;%1&apos; exists already; choose another with --name</source>
        <translation>un projet nommé &apos;%1&apos; existe déjà ; choisissez-en un autre avec --name</translation>
    </message>
    <message id="CliErrorCannotCreateProject">
        <source>cannot create the project &apos;%1&apos;</source>
        <translation>impossible de créer le projet &apos;%1&apos;</translation>
    </message>
    <message id="CliVacuumed">
        <source>Vacuumed &apos;%1&apos;: %2 non-HTML pages taken off the links-sent counts of the pages linking to them
</source>
        <translation>&apos;%1&apos; nettoyé : %2 pages non HTML retirées du nombre de liens émis des pages qui pointent vers elles
</translation>
    </message>
    <message id="CliOwnerAnotherProcess">
        <source>another process</source>
        <translation>un autre processus</translation>
    </message>
    <message id="CliOwnerProcess">
        <source>process %1</source>
        <translation>le processus %1</translation>
    </message>
    <message id="CliOwnerProcessFor">
        <source>process %1 (%2)</source>
        <translation>le processus %1 (%2)</translation>
    </message>
    <message id="CliErrorProjectInUse">
        <source>the project &apos;%1&apos; is in use by %2; try again once it has finished</source>
        <translation>le projet &apos;%1&apos; est utilisé par %2 ; réessayez quand il aura fini</translation>
    </message>
    <message id="CliErrorCannotLock">
        <source>cannot lock the project &apos;%1&apos; (%2): %3</source>
        <translation>impossible de verrouiller le projet &apos;%1&apos; (%2) : %3</translation>
    </message>
    <message id="CliProgressVacuum">
        <source>vacuum %1/%2</source>
        <translation>nettoyage %1/%2</translation>
    </message>
    <message id="CliProgressLine">
        <source>%1 pages  depth %2  queue %3 waiting / %4 total</source>
        <translation>%1 pages  profondeur %2  file %3 en attente / %4 au total</translation>
    </message>
    <message id="CliProgressBar">
        <source>%1 pages  depth %2  %3 waiting/%4</source>
        <translation>%1 pages  prof. %2  %3 en attente/%4</translation>
    </message>
    <message id="CliFilesCannotOpen">
        <source>it cannot be opened</source>
        <translation>le fichier ne peut pas être ouvert</translation>
    </message>
    <message id="CliFilesNameTooLong">
        <source>the name is too long: the database&apos;s journal would need a file name of %1 bytes, the file system allows %2</source>
        <translation>le nom est trop long : le journal de la base demanderait un nom de fichier de %1 octets, le système de fichiers en permet %2</translation>
    </message>
    <message id="CliFilesNoTables">
        <source>its tables could not be created</source>
        <translation>les tables de la base n&apos;ont pas pu être créées</translation>
    </message>
    <message id="CliErrorOptionNeedsValue">
        <source>option %1 needs a value</source>
        <translation>l&apos;option %1 attend une valeur</translation>
    </message>
    <message id="CliErrorDataDirNeedsDirectory">
        <source>option --data-dir needs a directory</source>
        <translation>l&apos;option --data-dir attend un dossier</translation>
    </message>
    <message id="CliErrorUnknownOptionFor">
        <source>unknown option %1 for &apos;%2&apos;</source>
        <translation>option %1 inconnue pour &apos;%2&apos;</translation>
    </message>
    <message id="CliErrorUnknownOption">
        <source>unknown option %1</source>
        <translation>option %1 inconnue</translation>
    </message>
    <message id="CliErrorUnknownCommand">
        <source>unknown command &apos;%1&apos;</source>
        <translation>commande &apos;%1&apos; inconnue</translation>
    </message>
    <message id="CliErrorNoCommand">
        <source>no command given</source>
        <translation>aucune commande donnée</translation>
    </message>
    <message id="CliErrorUsage">
        <source>usage: quillmere [--data-dir DIR] %1</source>
        <translation>utilisation : quillmere [--data-dir DIR] %1</translation>
    </message>
    <message id="CliUsageIntro">
        <source>Usage: quillmere [--data-dir DIR] COMMAND [ARGS...]

Quillmere crawls one web site per project and audits its pages and links.

Commands:
</source>
        <translation>Utilisation : quillmere [--data-dir DIR] COMMANDE [ARGUMENTS...]

Quillmere analyse un site web par projet et audite ses pages et ses liens.

Commandes :
</translation>
    </message>
    <message id="CliUsageOptions">
        <source>
Options:
  --data-dir DIR   keep the projects in DIR (default: $QUILLMERE_DATA_DIR, else
                   $XDG_DATA_HOME/org.quillmere.Quillmere)
  -h, --help       show this help, or a command&apos;s help after its name
</source>
        <translation>
Options :
  --data-dir DIR   garde les projets dans DIR (par défaut : $QUILLMERE_DATA_DIR, sinon
                   $XDG_DATA_HOME/org.quillmere.Quillmere)
  -h, --help       affiche cette aide, ou l&apos;aide d&apos;une commande après son nom
</translation>
    </message>
    <message id="CliCommandHelp">
        <source>Usage: quillmere [--data-dir DIR] %1

%2
%3</source>
        <translation>Utilisation : quillmere [--data-dir DIR] %1

%2
%3</translation>
    </message>
    <message id="CliTryHelp">
        <source>Try &apos;quillmere --help&apos;.</source>
        <translation>Essayez &apos;quillmere --help&apos;.</translation>
    </message>
    <message id="CliErrorCannotCreateDemo">
        <source>cannot create the project &apos;demo&apos; in %1</source>
        <translation>impossible de créer le projet &apos;demo&apos; dans %1</translation>
    </message>
    <message id="ProjectErrorNameHasControl">
        <source>a project name cannot hold control characters (tabs, line ends...)</source>
        <translation>un nom de projet ne peut pas contenir de caractères de contrôle (tabulations, fins de ligne...)</translation>
    </message>
    <message id="ProjectErrorRegistryBusy">
        <source>the project registry %1 is being changed by another process; try again</source>
        <translation>le registre des projets %1 est en cours de modification par un autre processus ; réessayez</translation>
    </message>
    <message id="ProjectErrorCannotLockRegistry">
        <source>cannot lock the project registry (%1): %2</source>
        <translation>impossible de verrouiller le registre des projets (%1) : %2</translation>
    </message>
    <message id="ProjectErrorFileOfNoProject">
        <source>the file %1 belongs to no project (left by a deleted project or a stopped crawl); a new project does not take it over: move or remove it first</source>
        <translation>le fichier %1 n&apos;appartient à aucun projet (laissé par un projet supprimé ou une analyse interrompue) ; un nouveau projet ne le reprend pas : déplacez-le ou supprimez-le d&apos;abord</translation>
    </message>
    <message id="ProjectInUseMessage">
        <source>The project “%1” is already in use by another program.</source>
        <translation>Le projet « %1 » est déjà utilisé par un autre programme.</translation>
    </message>
    <message id="ProjectInUseByProcess">
        <source>Process %1 (%2) is crawling or changing it: wait until it has finished.</source>
        <translation>Le processus %1 (%2) l&apos;analyse ou le modifie : attendez qu&apos;il ait fini.</translation>
    </message>
    <message id="ProjectInUseWait">
        <source>Wait until it has finished.</source>
        <translation>Attendez qu&apos;il ait fini.</translation>
    </message>
    <message id="ProjectLockCannotBeMade">
        <source>The lock %1 cannot be created: %2</source>
        <translation>Le verrou %1 ne peut pas être créé : %2</translation>
    </message>
    <message id="CliNewURLStoredAs">
        <source>The URL %1 is stored as %2, the form the crawl compares links with
</source>
        <translation>L&apos;URL %1 est enregistrée sous la forme %2, celle à laquelle l&apos;analyse compare les liens
</translation>
    </message>
    <message id="CliErrorDatabaseMissingRestart">
        <source>the crawl database of &apos;%1&apos; is missing (%2); &apos;crawl %1 --restart&apos; crawls the site afresh</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; est absente (%2) ; &apos;crawl %1 --restart&apos; analyse le site à nouveau</translation>
    </message>
    <message id="CliErrorDatabaseReadOnly">
        <source>the crawl database of &apos;%1&apos; cannot be written (%2): check the file&apos;s permissions</source>
        <translation>la base d&apos;analyse de &apos;%1&apos; ne peut pas être écrite (%2) : vérifiez les droits du fichier</translation>
    </message>
    <message id="ProjectErrorDeletedElsewhere">
        <source>the project &apos;%1&apos; is no longer in the registry: another program deleted it</source>
        <translation>le projet « %1 » n&apos;est plus dans le registre : un autre programme l&apos;a supprimé</translation>
    </message>
    <message id="CliFailOnBrokenStartPage">
        <source>the start page %1 could not be checked (%2): nothing of the site was</source>
        <translation>la page de départ %1 n&apos;a pas pu être vérifiée (%2) : rien du site ne l&apos;a été</translation>
    </message>
    <message id="CliErrorBadMaxTransferTime">
        <source>--max-transfer-time wants a number of seconds from 1 to 86400</source>
        <translation>--max-transfer-time attend un nombre de secondes de 1 à 86400</translation>
    </message>
    <message id="CliRulesHelp">
        <source>  --rules classic|web  how links are read (default classic). classic: the original rules,
               unchanged. web: links read as a browser reads them (RFC 3986, every link kind:
               a, area, link, img and srcset, script, iframe, video, object, meta refresh,
               url() in styles), pages of the site crawled, every other link checked,
               robots.txt honoured (RFC 9309), #fragments checked
</source>
        <translation>  --rules classic|web  comment les liens sont lus (classic par défaut). classic : les règles
               d&apos;origine, inchangées. web : les liens lus comme un navigateur les lit (RFC 3986,
               toutes les sortes de liens : a, area, link, img et srcset, script, iframe, video,
               object, meta refresh, url() des styles), pages du site parcourues, tous les autres
               liens vérifiés, robots.txt respecté (RFC 9309), #fragments vérifiés
</translation>
    </message>
    <message id="CliWebOptionsHelp">
        <source>Web rules only (a classic project refuses them):
  --no-external      do not check links to other hosts
  --ignore-robots    ask for what robots.txt forbids
  --include RE       ask only for URLs that match one such regular expression (repeatable)
  --exclude RE       leave alone URLs that match (repeatable)
  --user-agent UA    the User-Agent sent (default Quillmere/version)
  --header &quot;N: v&quot;    a request header sent with every request (repeatable)
  --max-page-size B  bytes of a page read at most (default 33554432, 32 MiB)
  --external-timeout S  seconds a check of another host may stay silent (default 15)
  --per-host N       checks in flight to one other host at most (default 2)
</source>
        <translation>Règles web seulement (un projet classic les refuse) :
  --no-external      ne vérifie pas les liens vers d&apos;autres hôtes
  --ignore-robots    demande aussi ce que robots.txt interdit
  --include RE       ne demande que les URL qui vérifient une de ces expressions (répétable)
  --exclude RE       laisse de côté les URL qui la vérifient (répétable)
  --user-agent UA    le User-Agent envoyé (par défaut Quillmere/version)
  --header &quot;N: v&quot;    un en-tête envoyé avec chaque requête (répétable)
  --max-page-size O  octets lus d&apos;une page au plus (par défaut 33554432, 32 Mio)
  --external-timeout S  secondes de silence permises à la vérification d&apos;un autre hôte (15)
  --per-host N       vérifications en cours vers un même autre hôte au plus (par défaut 2)
</translation>
    </message>
    <message id="CliErrorBadRules">
        <source>--rules wants classic or web, not &quot;%1&quot;</source>
        <translation>--rules attend classic ou web, pas « %1 »</translation>
    </message>
    <message id="CliErrorBadRegex">
        <source>%1 &quot;%2&quot; is not a regular expression: %3</source>
        <translation>%1 « %2 » n&apos;est pas une expression régulière : %3</translation>
    </message>
    <message id="CliErrorBadUserAgent">
        <source>--user-agent wants a text on one line</source>
        <translation>--user-agent attend un texte sur une ligne</translation>
    </message>
    <message id="CliErrorBadHeader">
        <source>--header wants &quot;Name: value&quot; on one line, not &quot;%1&quot;</source>
        <translation>--header attend « Nom: valeur » sur une ligne, pas « %1 »</translation>
    </message>
    <message id="CliErrorBadMaxPageSize">
        <source>--max-page-size wants a number of bytes from 1024 to 1073741824</source>
        <translation>--max-page-size attend un nombre d&apos;octets de 1024 à 1073741824</translation>
    </message>
    <message id="CliErrorBadExternalTimeout">
        <source>--external-timeout wants a number of seconds from 0.1 to 86400</source>
        <translation>--external-timeout attend un nombre de secondes de 0,1 à 86400</translation>
    </message>
    <message id="CliErrorBadPerHost">
        <source>--per-host wants a number of requests from 1 to 16</source>
        <translation>--per-host attend un nombre de requêtes de 1 à 16</translation>
    </message>
    <message id="CliErrorWebOptionOnClassic">
        <source>project &apos;%1&apos; uses the classic rules: these options are for the web rules (make a project with --rules web)</source>
        <translation>le projet « %1 » suit les règles classic : ces options sont celles des règles web (créez un projet avec --rules web)</translation>
    </message>
    <message id="CliErrorWebOptionsNeedWebRules">
        <source>these options are for the web rules: add --rules web</source>
        <translation>ces options sont celles des règles web : ajoutez --rules web</translation>
    </message>
    <message id="CliErrorNotWebProject">
        <source>project &apos;%1&apos; uses the classic rules: this report needs a project made with --rules web</source>
        <translation>le projet « %1 » suit les règles classic : ce rapport demande un projet créé avec --rules web</translation>
    </message>
    <message id="CliColumnKind">
        <source>Kind</source>
        <translation>Sorte</translation>
    </message>
    <message id="CliColumnTag">
        <source>Tag</source>
        <translation>Balise</translation>
    </message>
    <message id="CliColumnExternalURL">
        <source>External URL</source>
        <translation>URL externe</translation>
    </message>
    <message id="CliColumnVerdict">
        <source>Verdict</source>
        <translation>Verdict</translation>
    </message>
    <message id="CliColumnTargetURL">
        <source>Target URL</source>
        <translation>URL visée</translation>
    </message>
    <message id="CliColumnFragment">
        <source>Fragment</source>
        <translation>Fragment</translation>
    </message>
    <message id="CliColumnRule">
        <source>robots.txt rule</source>
        <translation>Règle de robots.txt</translation>
    </message>
    <message id="CliExternalTitle">
        <source>External URLs: %1, links to them: %2</source>
        <translation>URL externes : %1, liens vers elles : %2</translation>
    </message>
    <message id="CliFragmentsTitle">
        <source>Missing fragments: %1, links to them: %2</source>
        <translation>Fragments absents : %1, liens vers eux : %2</translation>
    </message>
    <message id="CliRobotsTitle">
        <source>Blocked by robots.txt: %1 URLs, links to them: %2</source>
        <translation>Bloquées par robots.txt : %1 URL, liens vers elles : %2</translation>
    </message>
    <message id="CliExternalSummary">
        <source>list the links to other hosts with what their check answered (web rules)</source>
        <translation>liste les liens vers d&apos;autres hôtes avec la réponse de leur vérification (règles web)</translation>
    </message>
    <message id="CliExternalDetails">
        <source>Every URL on another host, port or scheme of http(s) that a page of the site links to, with
its status and verdict: ok, broken, blocked (401, 403, 429, 999 or a challenge page: the site
turns robots away, the link may well work in a browser), robots (its robots.txt forbids the
check), excluded (--include/--exclude), skipped (--no-external) or pending (not checked yet).
</source>
        <translation>Chaque URL d&apos;un autre hôte, port ou schéma http(s) vers laquelle une page du site mène, avec
son statut et son verdict : ok, broken (cassé), blocked (401, 403, 429, 999 ou une page de
défi : le site refuse les robots, le lien peut marcher dans un navigateur), robots (son
robots.txt interdit la vérification), excluded (--include/--exclude), skipped
(--no-external) ou pending (pas encore vérifié).
</translation>
    </message>
    <message id="CliFragmentsSummary">
        <source>list the links whose #fragment the target page does not hold (web rules)</source>
        <translation>liste les liens dont la page visée n&apos;a pas le #fragment (règles web)</translation>
    </message>
    <message id="CliFragmentsDetails">
        <source>A link to a page of the site with a #fragment must find an element with that id, or an
&lt;a name&gt;, in the page; &quot;#&quot; and &quot;#top&quot; always exist. A missing fragment does not make the
page broken.
</source>
        <translation>Un lien vers une page du site avec un #fragment doit y trouver un élément de cet id, ou un
&lt;a name&gt; ; « # » et « #top » existent toujours. Un fragment absent ne rend pas la page cassée.
</translation>
    </message>
    <message id="CliRobotsSummary">
        <source>list what robots.txt kept the crawl from, with the rule (web rules)</source>
        <translation>liste ce que robots.txt a interdit à l&apos;analyse, avec la règle (règles web)</translation>
    </message>
    <message id="CliRobotsDetails">
        <source>Every URL the crawl did not ask for because the robots.txt of its host forbids it, with the
rule that matched (crawl --ignore-robots asks anyway).
</source>
        <translation>Chaque URL que l&apos;analyse n&apos;a pas demandée parce que le robots.txt de son hôte l&apos;interdit, avec
la règle qui l&apos;a décidé (crawl --ignore-robots la demande quand même).
</translation>
    </message>
    <message id="CliClassicMisreadHint">
        <source>%1 of the broken URLs come from links the classic rules read unlike a browser (another scheme, a leading blank, a &quot;#&quot; or &quot;&quot; link); a project made with --rules web reads them as browsers do</source>
        <translation>%1 des URL cassées viennent de liens que les règles classic lisent autrement qu&apos;un navigateur (autre schéma, blanc en tête, lien « # » ou « ») ; un projet créé avec --rules web les lit comme les navigateurs</translation>
    </message>
    <message id="CliReportBrokenFragments">
        <source>Broken fragments:</source>
        <translation>Fragments absents :</translation>
    </message>
    <message id="CliReportWebTitle">
        <source>Links checked, by kind and status:</source>
        <translation>Liens vérifiés, par sorte et statut :</translation>
    </message>
    <message id="CliReportWebPages">
        <source>pages:</source>
        <translation>pages :</translation>
    </message>
    <message id="CliReportWebResources">
        <source>resources:</source>
        <translation>ressources :</translation>
    </message>
    <message id="CliReportWebExternal">
        <source>external:</source>
        <translation>externes :</translation>
    </message>
    <message id="CliReportWebOther">
        <source>other schemes:</source>
        <translation>autres schémas :</translation>
    </message>
    <message id="CliShowRules">
        <source>Link rules:</source>
        <translation>Règles des liens :</translation>
    </message>
    <message id="CliVacuumWeb">
        <source>project &apos;%1&apos; uses the web rules: its link counts are exact after every crawl, there is nothing to vacuum
</source>
        <translation>le projet « %1 » suit les règles web : ses nombres de liens sont exacts après chaque analyse, rien à nettoyer
</translation>
    </message>
    <message id="CreateProjectLabelRegles">
        <source>Link rules:</source>
        <translation>Règles des liens :</translation>
    </message>
    <message id="CreateProjectReglesClassic">
        <source>Classic (the original rules)</source>
        <translation>Classiques (les règles d&apos;origine)</translation>
    </message>
    <message id="CreateProjectReglesWeb">
        <source>Web (links read as a browser reads them)</source>
        <translation>Web (liens lus comme par un navigateur)</translation>
    </message>
    <message id="CreateProjectReglesToolTip">
        <source>Web: every link kind resolved as a browser does, links to other sites, images, styles and scripts checked, robots.txt honoured, #fragments checked. Chosen once, when the project is made.</source>
        <translation>Web : toutes les sortes de liens résolues comme par un navigateur, liens vers d&apos;autres sites, images, styles et scripts vérifiés, robots.txt respecté, #fragments vérifiés. Choisi une fois, à la création du projet.</translation>
    </message>
    <message id="CheckWebEntriesTitle">
        <source>done entries (web rules): each done queue entry has its answer, or what kept it from being asked, recorded (%1 done)</source>
        <translation>entrées terminées (règles web) : chaque entrée de file terminée a sa réponse, ou ce qui l&apos;a empêchée d&apos;être demandée, enregistrée (%1 terminées)</translation>
    </message>
    <message id="CheckWebEntryProblem">
        <source>%1: marked done, but its answer was not recorded</source>
        <translation>%1 : marquée terminée, mais sa réponse n&apos;a pas été enregistrée</translation>
    </message>
    <message id="CheckWebLinksTitle">
        <source>links found (web rules): each joins a page of the site to a recorded target (%1 links)</source>
        <translation>liens trouvés (règles web) : chacun relie une page du site à une cible enregistrée (%1 liens)</translation>
    </message>
    <message id="CheckWebLinkProblem">
        <source>a link from page %1 to target %2: the page or the target is missing</source>
        <translation>un lien de la page %1 vers la cible %2 : la page ou la cible manque</translation>
    </message>
    <message id="CliReportBlockedNote">
        <source>%1 external URLs turned the crawler away (401, 403, 429, 999 or a challenge page): they are blocked, not broken, and may well work in a browser (see &apos;external %2&apos;)</source>
        <translation>%1 URL externes ont refusé le robot (401, 403, 429, 999 ou une page de défi) : elles sont bloquées, pas cassées, et peuvent marcher dans un navigateur (voir « external %2 »)</translation>
    </message>
    <message id="AuditTabDocuments">
        <source>Documents</source>
        <translation>Documents</translation>
    </message>
    <message id="AuditTabOverview">
        <source>Overview</source>
        <translation>Vue d&apos;ensemble</translation>
    </message>
    <message id="AuditTabCodes">
        <source>Response codes</source>
        <translation>Codes de réponse</translation>
    </message>
    <message id="AuditTabBroken">
        <source>Broken links</source>
        <translation>Liens cassés</translation>
    </message>
    <message id="AuditTabRedirects">
        <source>Redirects</source>
        <translation>Redirections</translation>
    </message>
    <message id="AuditTabExternal">
        <source>External links</source>
        <translation>Liens externes</translation>
    </message>
    <message id="AuditTabResources">
        <source>Resources</source>
        <translation>Ressources</translation>
    </message>
    <message id="AuditTabRobots">
        <source>Blocked by robots.txt</source>
        <translation>Bloqués par robots.txt</translation>
    </message>
    <message id="AuditTabFragments">
        <source>Missing fragments</source>
        <translation>Fragments absents</translation>
    </message>
    <message id="AuditSearchPlaceholder">
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message id="AuditColumnsButton">
        <source>Columns</source>
        <translation>Colonnes</translation>
    </message>
    <message id="AuditExportButton">
        <source>Export CSV…</source>
        <translation>Exporter en CSV…</translation>
    </message>
    <message id="AuditColumnFinding">
        <source>Finding</source>
        <translation>Constat</translation>
    </message>
    <message id="AuditColumnCount">
        <source>Count</source>
        <translation>Nombre</translation>
    </message>
    <message id="AuditColumnClass">
        <source>Class</source>
        <translation>Classe</translation>
    </message>
    <message id="AuditClassFailed">
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message id="AuditFindingPages">
        <source>Documents listed</source>
        <translation>Documents référencés</translation>
    </message>
    <message id="AuditFindingErrors">
        <source>URLs answering an error (4xx, 5xx, failures)</source>
        <translation>URL en erreur (4xx, 5xx, échecs)</translation>
    </message>
    <message id="AuditFindingBrokenLinks">
        <source>Broken links</source>
        <translation>Liens cassés</translation>
    </message>
    <message id="AuditFindingBrokenTargets">
        <source>Broken targets</source>
        <translation>Cibles cassées</translation>
    </message>
    <message id="AuditFindingRedirects">
        <source>Redirected URLs</source>
        <translation>URL redirigées</translation>
    </message>
    <message id="AuditFinding404All">
        <source>Error 404, all types</source>
        <translation>Erreur 404, tous types</translation>
    </message>
    <message id="AuditFinding404Html">
        <source>Error 404, HTML only</source>
        <translation>Erreur 404, HTML seulement</translation>
    </message>
    <message id="AuditFinding404Other">
        <source>Error 404, not HTML</source>
        <translation>Erreur 404, autres que HTML</translation>
    </message>
    <message id="AuditFindingNoIndex">
        <source>Pages marked noindex</source>
        <translation>Pages marquées noindex</translation>
    </message>
    <message id="AuditFindingCanonical">
        <source>Pages with a canonical URL elsewhere</source>
        <translation>Pages dont l&apos;URL canonique est ailleurs</translation>
    </message>
    <message id="AuditFindingExternal">
        <source>External URLs</source>
        <translation>URL externes</translation>
    </message>
    <message id="AuditFindingResources">
        <source>Resources (images, styles, scripts)</source>
        <translation>Ressources (images, styles, scripts)</translation>
    </message>
    <message id="AuditFindingRobots">
        <source>URLs blocked by robots.txt</source>
        <translation>URL bloquées par robots.txt</translation>
    </message>
    <message id="AuditFindingFragments">
        <source>Links to a missing fragment</source>
        <translation>Liens vers un fragment absent</translation>
    </message>
    <message id="AuditMenuExportSitemap">
        <source>Export Sitemap…</source>
        <translation>Exporter le plan du site…</translation>
    </message>
    <message id="AuditMenuExportList">
        <source>Export Current List…</source>
        <translation>Exporter la liste affichée…</translation>
    </message>
    <message id="AuditExportDialogTitle">
        <source>Export the list as CSV</source>
        <translation>Exporter la liste en CSV</translation>
    </message>
    <message id="AuditSitemapDialogTitle">
        <source>Export the sitemap</source>
        <translation>Exporter le plan du site</translation>
    </message>
    <message id="AuditExportFailedMessage">
        <source>Could not write %1: %2</source>
        <translation>Impossible d&apos;écrire %1 : %2</translation>
    </message>
    <message id="DocumentsListTitleAllOne">
        <source>%1 document listed</source>
        <translation>%1 document référencé</translation>
    </message>
    <message id="DocumentsListTitle404AllOne">
        <source>%1 document in 404, all types, listed</source>
        <translation>%1 document en 404 tous types référencé</translation>
    </message>
    <message id="DocumentsListTitle404HtmlOne">
        <source>%1 document in 404 of type HTML listed</source>
        <translation>%1 document en 404 de type HTML référencé</translation>
    </message>
    <message id="DocumentsListTitle404OtherOne">
        <source>%1 document in 404 not of type HTML listed</source>
        <translation>%1 document en 404 non HTML référencé</translation>
    </message>
    <message id="DocumentsListTitleNoIndexOne">
        <source>%1 noindex document listed</source>
        <translation>%1 document en noindex référencé</translation>
    </message>
    <message id="DocumentsListTitleCanonicalOne">
        <source>%1 canonical document listed</source>
        <translation>%1 document canonisé référencé</translation>
    </message>
    <message id="LinksListTitleOne">
        <source>%1 link to the selected document</source>
        <translation>%1 lien vers le document sélectionné</translation>
    </message>
    <message id="ProgressButtonBackground">
        <source>Continue in the background</source>
        <translation>Continuer en arrière-plan</translation>
    </message>
    <message id="ProgressButtonBackgroundToolTip">
        <source>Closes this window; the crawl goes on and its progress shows in the status bar (a click there, or Window &gt; Show the crawl&apos;s progress, brings this window back).</source>
        <translation>Ferme cette fenêtre ; l&apos;analyse continue et sa progression s&apos;affiche dans la barre d&apos;état (un clic sur celle-ci, ou Fenêtre &gt; Afficher la progression de l&apos;analyse, ramène cette fenêtre).</translation>
    </message>
    <message id="AppDelegateMenuItemShowProgress">
        <source>Show the crawl&apos;s progress</source>
        <translation>Afficher la progression de l&apos;analyse</translation>
    </message>
    <message id="StatusBarCrawlInBackground">
        <source>Crawl in the background: %1, depth %2 — %3</source>
        <translation>Analyse en arrière-plan : %1, profondeur %2 — %3</translation>
    </message>
    <message id="StatusBarPagesOne">
        <source>%1 page analysed</source>
        <translation>%1 page analysée</translation>
    </message>
    <message id="StatusBarPages">
        <source>%1 pages analysed</source>
        <translation>%1 pages analysées</translation>
    </message>
    <message id="StatusBarClickToShowProgress">
        <source>Click to show the crawl&apos;s progress</source>
        <translation>Cliquez pour afficher la progression de l&apos;analyse</translation>
    </message>
    <message id="CreateProjectErrorLimitDepth">
        <source>&apos;%1&apos; is not a maximum depth: a whole number, -1 or more (empty: no limit).</source>
        <translation>« %1 » n&apos;est pas une profondeur maximale : un nombre entier, -1 ou plus (vide : pas de limite).</translation>
    </message>
    <message id="CreateProjectErrorLimitPageCount">
        <source>&apos;%1&apos; is not a maximum number of pages: a whole number, -1 or more (empty: no limit).</source>
        <translation>« %1 » n&apos;est pas un nombre maximal de pages : un nombre entier, -1 ou plus (vide : pas de limite).</translation>
    </message>
    <message id="RecentProjectGoneMessage">
        <source>The project &apos;%1&apos; no longer exists.</source>
        <translation>Le projet « %1 » n&apos;existe plus.</translation>
    </message>
    <message id="AboutWindowTitle">
        <source>About Quillmere</source>
        <translation>À propos de Quillmere</translation>
    </message>
    <message id="AboutText">
        <source>Quillmere %1
Site crawler and link auditor.</source>
        <translation>Quillmere %1
Robot d&apos;analyse de sites et vérificateur de liens.</translation>
    </message>
    <message id="AboutLicences">
        <source>Built with Qt %1 and Qt WebEngine (LGPL 3; Chromium under BSD and other free licences), SQLite (public domain), libxml2 (MIT licence) and libcurl (curl licence, MIT style).</source>
        <translation>Construit avec Qt %1 et Qt WebEngine (LGPL 3 ; Chromium sous licence BSD et d&apos;autres licences libres), SQLite (domaine public), libxml2 (licence MIT) et libcurl (licence curl, de type MIT).</translation>
    </message>
    <message id="HelpWindowTitle">
        <source>Quillmere Help</source>
        <translation>Aide de Quillmere</translation>
    </message>
    <message id="PreviewTabPreview">
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message id="PreviewTabPage">
        <source>Page</source>
        <translation>Page</translation>
    </message>
    <message id="PreviewTabSafePreview">
        <source>Preview without scripts</source>
        <translation>Aperçu sans script</translation>
    </message>
    <message id="PreviewTabMap">
        <source>Site map</source>
        <translation>Carte du site</translation>
    </message>
    <message id="PreviewTabCharts">
        <source>Charts</source>
        <translation>Graphiques</translation>
    </message>
    <message id="PagePanelNoPage">
        <source>No page selected</source>
        <translation>Aucune page sélectionnée</translation>
    </message>
    <message id="PagePanelURL">
        <source>Page</source>
        <translation>Page</translation>
    </message>
    <message id="PagePanelStatus">
        <source>Status</source>
        <translation>Statut</translation>
    </message>
    <message id="PagePanelResponseTime">
        <source>Response time</source>
        <translation>Temps de réponse</translation>
    </message>
    <message id="PagePanelResponseTimeValue">
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message id="PagePanelRedirects">
        <source>Redirects</source>
        <translation>Redirections</translation>
    </message>
    <message id="PagePanelNoRedirect">
        <source>none</source>
        <translation>aucune</translation>
    </message>
    <message id="PagePanelNotFetched">
        <source>not fetched</source>
        <translation>non récupérée</translation>
    </message>
    <message id="PagePanelOutgoingTitle">
        <source>Pages this page links to</source>
        <translation>Pages vers lesquelles cette page fait un lien</translation>
    </message>
    <message id="PagePanelColumnAnchor">
        <source>Anchor</source>
        <translation>Ancre</translation>
    </message>
    <message id="PagePanelColumnTarget">
        <source>Linked page</source>
        <translation>Page liée</translation>
    </message>
    <message id="PagePanelColumnStatus">
        <source>Status</source>
        <translation>Statut</translation>
    </message>
    <message id="SiteMapNodeToolTip">
        <source>%1
status %2, links received: %3</source>
        <translation>%1
statut %2, liens reçus : %3</translation>
    </message>
    <message id="ChartsPagesSeries">
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message id="ChartsPagesByDepthTitle">
        <source>Pages by depth</source>
        <translation>Pages par profondeur</translation>
    </message>
    <message id="ChartsResponseCodesTitle">
        <source>Response codes</source>
        <translation>Codes de réponse</translation>
    </message>
    <message id="ChartsResponseTimesTitle">
        <source>Response times</source>
        <translation>Temps de réponse</translation>
    </message>
    <message id="ChartsTimeRange">
        <source>%1–%2</source>
        <translation>%1–%2</translation>
    </message>
    <message id="ChartsTimeOver">
        <source>≥ %1</source>
        <translation>≥ %1</translation>
    </message>
    <message id="ChartsDepthAxis">
        <source>Depth</source>
        <translation>Profondeur</translation>
    </message>
    <message id="ChartsCodeAxis">
        <source>Status or failure</source>
        <translation>Statut ou échec</translation>
    </message>
    <message id="ChartsTimeAxis">
        <source>Milliseconds</source>
        <translation>Millisecondes</translation>
    </message>
    <message id="SiteMapLegendNoAnswer">
        <source>no answer</source>
        <translation>sans réponse</translation>
    </message>
    <message id="SiteMapLegendNotFetched">
        <source>not fetched</source>
        <translation>non récupérée</translation>
    </message>
    <message id="SiteMapLegendSize">
        <source>size: links received</source>
        <translation>taille : liens reçus</translation>
    </message>
</context>
</TS>
