#pragma once

#include "cli/CliContext.h"

// demo: serves the demo site that ships inside the program and crawls it as project "demo".
namespace DemoCommand {
CommandSpec spec();
int run(CliContext& context);
} // namespace DemoCommand
