// The data environment of a run, as the ends of a run see it: the restore
// that JTKTestSuite::restoreApplicationSupportData performs, with its outcome.
#pragma once

namespace jtk {

// Puts the user's Application Support data back when it is aside. False when
// data stays aside that no other run will put back (a line has said where it
// is): the run must not end as a success then.
bool jtkRestoreApplicationSupportData();

}  // namespace jtk
