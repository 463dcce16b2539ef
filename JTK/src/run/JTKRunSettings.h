// A run's own configuration folder. A program reads its settings (QSettings
// files, the file dialog's history, recent-file lists) from $XDG_CONFIG_HOME
// when it starts and writes them there while it runs. Given, before its
// main, a fresh folder of its own, filled from the run's test settings, the
// program never reads nor changes the user's settings, and every run starts
// from the same ones. The folder is removed at every end of the process; one
// left by a process killed outright is removed when the next run starts.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace jtk {

// The folder that holds the runs' settings folders:
// $XDG_CACHE_HOME/jtk/run-settings, or ~/.cache/jtk/run-settings; none
// when neither variable holds an absolute path.
std::optional<std::filesystem::path> jtkRunSettingsParent();

// Removes the folders of runs that ended without removing theirs, makes
// this process's folder ("run-XXXXXX" in the parent), copies the items of
// testSettings into it (a folder laid out like the configuration folder;
// none: the folder stays empty) and points XDG_CONFIG_HOME at it. A
// testSettings path without a folder is said in a line and leaves the
// folder empty. Returns an empty text when done, else why not; nothing is
// left behind then. Call once, before the program's main (it sets an
// environment variable).
std::string jtkMakeRunSettings(const std::optional<std::filesystem::path>& testSettings);

// This process's folder; none before jtkMakeRunSettings and after removal.
std::optional<std::filesystem::path> jtkRunSettingsFolder();

// Removes this process's folder; does nothing when it has none. Every end
// of the process calls it (jtkExitProcess, and exit() through atexit).
void jtkRemoveRunSettings();

}  // namespace jtk
