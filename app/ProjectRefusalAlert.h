#pragma once

#include "store/ProjectCatalog.h"

class QWidget;

// Tells the user, in an alert with one OK button, why the core refused a project use case:
// the process that holds the project, or the rule the name, URL or files break.
class ProjectRefusalAlert {
public:
    static void show(const ProjectCatalog::Result& refusal, QWidget* parent);
    // The core words its refusals as the command line prints them, after "quillmere: "; the
    // window shows them as a sentence of their own.
    static QString asSentence(QString text);
};
