// The backend's main queue: work handed to the GUI thread from any thread,
// in arrival order, through a queue of its own under a std::mutex. Qt's
// posted events only wake the GUI thread (an event without data), so the
// handover is visible to the thread sanitizer, which cannot see inside an
// uninstrumented Qt. Posted events are serviced in nested loops too (a
// QMessageBox::exec, a QMenu::exec), so the queue drains there as well.
#pragma once

#include <functional>

namespace jtk::qt {

// Makes the queue's receiver on the GUI thread (with a QApplication) and
// wakes it for work queued before. Until then work from other threads waits.
void startMainQueue();
// Queues work for the GUI thread; any thread.
void enqueueOnMain(std::function<void()> work);
// Runs what is queued now (GUI thread); returns how many items ran.
int drainMainQueue();
// The GUI thread: the QApplication's thread, or the thread that loaded the
// backend while there is none.
bool onGuiThread();

}  // namespace jtk::qt
