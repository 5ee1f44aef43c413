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
        <translation>%1 documents en 404 pas de type HTML référencés</translation>
    </message>
    <message id="DocumentsListTitleNoIndex">
        <source>%1 noindex documents listed</source>
        <translation>%1 documents en noindex référencés</translation>
    </message>
    <message id="DocumentsListTitleCanonical">
        <source>%1 canonical documents listed</source>
        <translation>%1 documents canonical référencés</translation>
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
        <source>%1 broken URLs, %2 links to them</source>
        <translation>%1 URL cassées, %2 liens vers elles</translation>
    </message>
    <message id="CliRedirectsTitle">
        <source>%1 redirecting URLs, %2 links to them</source>
        <translation>%1 URL redirigées, %2 liens vers elles</translation>
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
        <translation>canonical :</translation>
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
</context>
</TS>
