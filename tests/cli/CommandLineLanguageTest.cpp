#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QMap<QString, QString> kFrench{{"LANG", "fr_FR.UTF-8"}};

std::string page(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

TEST(CommandLineLanguage, UsageErrorsFollowTheLocale)
{
    CliResult r = runCli({"bogus"}, QString(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: commande 'bogus' inconnue\nEssayez 'quillmere --help'.\n"));
    r = runCli({"new", "site"}, QString(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.startsWith("quillmere: utilisation : quillmere [--data-dir DIR] new NAME URL")) << r.err.toStdString();
    r = runCli({"projects", "--colour"}, QString(), 60000, QByteArray(), {{"LC_ALL", "fr_FR.UTF-8"}});
    EXPECT_TRUE(r.err.contains("option --colour inconnue pour 'projects'")) << r.err.toStdString();

    r = runCli({"bogus"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: unknown command 'bogus'\nTry 'quillmere --help'.\n"));

    r = runCli({"--help"}, QString(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith("Utilisation : quillmere [--data-dir DIR] COMMANDE")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("\nCommandes :\n"));
    EXPECT_TRUE(r.out.contains("      liste les projets, du plus ancien au plus récent\n"));
    EXPECT_TRUE(r.out.contains("      vérifie que la base d'analyse d'un projet est saine\n"));
    EXPECT_FALSE(r.out.contains("Commands:"));
}

TEST(CommandLineLanguage, NewAndProjectsInFrench)
{
    QTemporaryDir dir;
    CliResult r = runCli({"projects"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, QStringLiteral("Aucun projet.\n"));

    r = runCli({"new", "site", "http://example.com/", "--depth", "3"}, dir.path(), 60000, QByteArray(), kFrench);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("Projet 'site' créé pour http://example.com (limite de profondeur : 3, "
                                    "limite de pages : aucune)\n"));
    r = runCli({"new", "site", "http://example.com"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: un projet nommé 'site' existe déjà\n"));
    r = runCli({"new", "other", "ftp://example.com"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: 'ftp://example.com' n'est pas une URL http ou https\n"));

    r = runCli({"projects"}, dir.path(), 60000, QByteArray(), kFrench);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2) << r.out.toStdString();
    EXPECT_TRUE(lines[0].startsWith("NOM   URL")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains("CRÉÉ LE"));
    EXPECT_TRUE(lines[0].endsWith("LIMITE PROF.  LIMITE PAGES  PAGES  PROF.")) << lines[0].toStdString();
    // The French titles set the widths: each value starts under its title.
    EXPECT_EQ(lines[1].indexOf("http://example.com"), lines[0].indexOf("URL"));
    EXPECT_EQ(lines[1].indexOf(QRegularExpression("3 +- +0 +0$")), lines[0].indexOf("LIMITE PROF."));

    r = runCli({"projects"}, dir.path());
    EXPECT_TRUE(r.out.startsWith("NAME  URL")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("DEPTH LIMIT  PAGE LIMIT  PAGES  DEPTH\n"));

    r = runCli({"delete", "site"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, QStringLiteral("Projet 'site' supprimé\n"));
}

TEST(CommandLineLanguage, AMissingProjectIsSaidInFrench)
{
    QTemporaryDir dir;
    CliResult r = runCli({"show", "nope"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: aucun projet nommé 'nope' (voir 'quillmere projects')\n"));
    EXPECT_TRUE(r.out.isEmpty());
    r = runCli({"show", "nope"}, dir.path());
    EXPECT_EQ(r.err, QStringLiteral("quillmere: no project named 'nope' (see 'quillmere projects')\n"));
}

TEST(CommandLineLanguage, CheckOfASoundProjectInFrench)
{
    QTemporaryDir dir;
    ASSERT_EQ(runCli({"new", "site", "http://example.com"}, dir.path()).exitCode, 0);
    CliResult r = runCli({"check", "site"}, dir.path(), 60000, QByteArray(), kFrench);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_GE(lines.size(), 3) << r.out.toStdString();
    EXPECT_EQ(lines.first(), QStringLiteral("Vérification de 'site' (%1/site.sqlite)").arg(dir.path()));
    EXPECT_TRUE(r.out.contains("\n  ok     intégrité : la vérification du fichier")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("\n  ok     une page par URL : ")) << r.out.toStdString();
    EXPECT_EQ(lines.last(), QStringLiteral("Saine : les %1 vérifications sont satisfaites.").arg(lines.size() - 2));
    EXPECT_FALSE(r.out.contains("integrity:"));

    r = runCli({"check", "site"}, dir.path());
    EXPECT_TRUE(r.out.contains("\n  ok    integrity: the library's own check")) << r.out.toStdString();
    EXPECT_TRUE(r.out.endsWith(QStringLiteral("Sound: all %1 checks hold.\n").arg(lines.size() - 2)));

    r = runCli({"check", "--help"}, QString(), 60000, QByteArray(), kFrench);
    EXPECT_TRUE(r.out.contains("Vérifie, sans rien modifier : l'intégrité du fichier")) << r.out.toStdString();
}

TEST(CommandLineLanguage, CrawlHelpInFrench)
{
    const CliResult r = runCli({"crawl", "--help"}, QString(), 60000, QByteArray(), kFrench);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith("Utilisation : quillmere [--data-dir DIR] crawl NAME [--continue|--restart]"))
        << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("analyse le site d'un projet, puis affiche le rapport\n"));
    EXPECT_TRUE(r.out.contains("  --parallel N requêtes en cours au plus (par défaut 8)"));
    EXPECT_TRUE(r.out.contains("  --max-rate R requêtes par seconde au plus (par défaut : pas de plafond)"));
    EXPECT_TRUE(r.out.contains("  --fail-on-broken  sort avec le code 4"));
    EXPECT_TRUE(r.out.contains("Retry-After d'au plus 60 s"));
    EXPECT_FALSE(r.out.contains("requests in flight"));

    const CliResult en = runCli({"crawl", "--help"});
    EXPECT_TRUE(en.out.contains("  --parallel N requests in flight at most (default 8)")) << en.out.toStdString();
}

TEST(CommandLineLanguage, TheCrawlPromptRefusesWithoutATerminalInFrench)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    const QString base = QString::fromStdString(server.baseUrl());
    server.setPage("/", page("Home", "<a href=\"/a.html\">A</a><a href=\"/b.html\">B</a><a href=\"/c.html\">C</a>"));
    for (const char* p : {"/a.html", "/b.html", "/c.html"})
        server.setPage(p, page("P", "<a href=\"/\">home</a>"));
    QTemporaryDir dir;
    ASSERT_EQ(runCli({"new", "site", base, "--pages", "1"}, dir.path()).exitCode, 0);
    CliResult r = runCli({"crawl", "site"}, dir.path(), 60000, QByteArray(), kFrench);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    // Progress on standard error speaks French too.
    EXPECT_TRUE(r.err.contains(" profondeur ")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(" en attente / ")) << r.err.toStdString();
    const size_t requests = server.requestCount();

    // Standard input is not a terminal: no question, the flags are asked for.
    r = runCli({"crawl", "site"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(QRegularExpression("^quillmere: 'site' a \\d+ URL en attente d'une analyse précédente ; utilisez "
                                   "--continue pour les reprendre ou --restart pour recommencer depuis le début\n$")
                    .match(r.err)
                    .hasMatch())
        << r.err.toStdString();
    r = runCli({"crawl", "site", "--continue", "--restart"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: --continue et --restart s'excluent l'un l'autre\n"));
    r = runCli({"crawl", "site", "--parallel", "0"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: --parallel attend un nombre de requêtes de 1 à 64\n"));
    r = runCli({"crawl", "site", "--max-rate", "-1"}, dir.path(), 60000, QByteArray(), kFrench);
    EXPECT_EQ(r.err, QStringLiteral("quillmere: --max-rate attend un nombre de requêtes par seconde de 0,01 à 1000\n"));
    EXPECT_EQ(server.requestCount(), requests);  // refusals fetch nothing

    r = runCli({"crawl", "site"}, dir.path());
    EXPECT_TRUE(r.err.contains("URLs waiting from an earlier crawl; use --continue to go on with them or --restart"))
        << r.err.toStdString();
    r = runCli({"crawl", "site", "--max-rate", "-1"}, dir.path());
    EXPECT_EQ(r.err, QStringLiteral("quillmere: --max-rate wants a number of requests per second from 0.01 to 1000\n"));
}

} // namespace
