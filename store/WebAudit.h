#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>

class Project;

// The web rules' reports, read from their tables: broken targets, external links, broken
// fragments, what robots.txt kept the crawl from, and the counts of the crawl report. Each
// listing gives one row per link (target, then source page), in target URL order; a target
// no page links to (the start URL) comes once with a null source.
class WebAudit {
public:
    struct Row {
        QString url;
        QString kind;       // page, resource, external, other
        QString verdict;    // ok, broken, blocked, robots, excluded, skipped, not-checked, pending, redirect
        int status = 0;
        QString failure;    // "timeout", "refused"...; "" when the server answered
        QString rule;       // the robots.txt rule, for verdict robots
        QString finalUrl;
        QString sourceUrl;  // null: no page links to it
        QString anchor;
        QString tag;
        QString attribute;
        QString fragment;   // fragments(): the fragment the link names
        // "404", "timeout": the status, else the failure, else the verdict.
        QString statusText() const;
    };
    using Visit = std::function<void(const Row&)>;

    // Broken pages, resources and external links.
    static bool forEachBroken(const std::shared_ptr<Project>& project, const Visit& visit);
    // Every external URL with its verdict.
    static bool forEachExternal(const std::shared_ptr<Project>& project, const Visit& visit);
    // Every resource of the site (images, styles, scripts...) with its verdict.
    static bool forEachResource(const std::shared_ptr<Project>& project, const Visit& visit);
    // Links whose fragment the target page does not hold ("" and "top" always exist).
    static bool forEachBrokenFragment(const std::shared_ptr<Project>& project, const Visit& visit);
    // What robots.txt forbade, with the rule.
    static bool forEachRobotsBlocked(const std::shared_ptr<Project>& project, const Visit& visit);

    // kind -> status class -> targets. Classes: 2xx, 3xx, 4xx, 5xx, failed, blocked, robots,
    // excluded, skipped, not-checked, pending.
    static QMap<QString, QMap<QString, qint64>> countsByKind(const std::shared_ptr<Project>& project);
    static qint64 countBrokenLinks(const std::shared_ptr<Project>& project);
    static qint64 countBrokenTargets(const std::shared_ptr<Project>& project);
    static qint64 countBrokenFragments(const std::shared_ptr<Project>& project);

    // For a classic project: the broken URLs that come from links its rules read unlike a
    // browser (another scheme or a leading blank read as a path, a "#" or "" link read as the
    // page's folder).
    static qint64 countClassicMisreadBroken(const std::shared_ptr<Project>& project);
    static bool looksMisread(const QString& targetUrl, const QString& sourceUrl);
};
