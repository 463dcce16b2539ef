// The backend's side of the main queue (GtkMainQueue.h is the seam the other
// parts use): which thread is GTK's, and draining what is queued.
#pragma once

namespace jtk::gtk {

// Names the calling thread as the main thread (installBackend's, which is
// GTK's). Until then it is the thread that loaded the backend.
void setMainThread();
// Runs what is queued now (main thread); returns how many items ran.
int drainMainQueue();

}  // namespace jtk::gtk
