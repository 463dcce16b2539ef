// The backend contract: everything a backend provides so that the framework
// runs on its toolkit, in one list. Read it top to bottom to write a backend;
// each entry names the header that declares it, where its full promise is.
// tests/neutral is the suite every backend must pass; the embedded desktop
// (desktop/), Qt Widgets (qt/) and GTK 4 (gtk/) are the backends that do.
//
// Layers. A backend is a static library that links jtk_platform and
// jtk_services and defines the free functions below in namespace
// jtk::platform. The framework calls only those declarations and never names
// a backend type. The services never call into a backend: a backend hands
// them what they need when it starts (step 0). Link order is the layer
// order: framework, backend, services, platform, imaging.
//
// Threads. "Main thread" is the thread that runs the backend's event loop.
// Functions marked (main) are called there only; (any) from any thread.
// Geometry is in points, origin at the bottom left of the main screen, y up;
// event locations are global with y growing down from the top of the main
// screen.
//
// 0. Start (required). Before the application's event loop first turns, the
//    backend installs its hooks for the services (JTK/services/BackendHooks.h):
//      services::installBackendHooks({.dispatchAsyncMain = <main queue>,
//                                     .resetStandardUserDefaults = <reset>});
//    Qt does it in installBackend; the desktop hands in its main queue as its
//    main run loop is made and the reset as its defaults are made.
//
// 1. Main queue and timers (required).                  Dispatch.h, RunLoop.h
//    isMainThread()                   (any)  true on the main thread.
//    dispatchSyncMain(work)           (any)  runs work on the main thread and
//                                            waits; inline on the main thread.
//    dispatchAsyncMain(work)          (any)  queues work in arrival order; it
//                                            runs in nested loops too (a modal
//                                            alert, a menu tracking).
//    dispatchAfterMain(seconds, work) (any)  runs work after a delay.
//    scheduleTimer(...)               (main) a timer on the main loop; in the
//                                            common modes it fires in nested loops.
//
// 2. Application, windows, views (required).   Application.h, Window.h, View.h
//    sharedApplication()              (main) the Application object: windows
//        in the platform's order (open pop-up surfaces such as popovers and
//        open menus included, where the toolkit makes them windows), key
//        window, main menu, activation, name, local event monitors that see
//        (and may swallow, where the toolkit lets them) every event.
//    class Window                     a frame view whose only subview is the
//        content view; frame on screen; close; key window; first responder.
//    class View                       hierarchy, frame and bounds (never
//        flipped), visibleRect, conversion to window coordinates, hidden,
//        accessibilityValue (text of text fields and labels, a slider's
//        number, a checkbox's state; none otherwise). isScrollView is
//        optional (default false). Every platform object is an Object
//        (Object.h): className unqualified, methods performed by name.
//    screens()                        (any)  main screen first.
//
// 3. Input (required).                                                Events.h
//    postEvent(tap, event)            (any)  updates services::HidState
//        (mouse events move the cursor, flags-changed events set the
//        modifiers) and queues delivery on the main thread in arrival order.
//    postEventToPid(pid, event)       (any)  delivers keyboard events to this
//        process; events for another process are dropped.
//    mouseLocation()                  (any)  the cursor in screen coordinates.
//    locationInWindow(event)          (main) the event in its window's
//        coordinates: the window under a press, the press's window for drags
//        and releases.
//    settleInput()                    (any)  returns once the input posted so far
//        has arrived and its immediate main-thread work has run; a no-op
//        where delivery is the backend's own queue (desktop, Qt), a round
//        trip through the window server where input goes through one (GTK).
//    postKeyStrokesToPid(pid, strokes) (any) types the strokes as one batch
//        where that is faster (GTK remaps spare keys for text without a key
//        of its own once per batch); false, posting nothing, elsewhere.
//    Shared, not for a backend to define (services): createEventSource,
//    createMouseEvent, createKeyboardEvent, keyboardEventSetUnicodeString,
//    moveCursorToPoint, mainDisplayID, currentModifierFlags.
//
// 4. Menus, status bar, alerts, text (required).
//                                  Menu.h, StatusBar.h, Alert.h, Text.h
//    class Menu, class MenuItem       titles, items, perform an item, cancel
//        tracking; post menuDidBeginTrackingNotification and
//        menuDidSendActionNotification on the main thread (the latter also
//        for a person's choice); optional MenuItem::titleView(), the view of
//        a menu-bar title where titles are views. Input a menu takes does not
//        reach the local event monitors.
//    statusItemWithLength(length)     (main) an item whose button has the
//        class name statusBarButtonClassName.
//    makeAlert()                      (main) runModal returns 1000 for the
//        first button, 1001 for the second...
//    textObjectString(object)         (main) the text of a field editor; post
//        textDidChangeNotification (for a person's edits only) /
//        textDidEndEditingNotification with the control as object and the
//        editor under textObjectKey.
//
// 5. Pictures and controls (required; may answer "cannot").
//                                                      Images.h, Controls.h
//    bitmapForCachingDisplay(view), cacheDisplayInBitmap(view, bitmap)
//        (main) the view's bounds drawn with its subviews into RGBA; none or
//        false when the backend cannot draw it.
//    setImage, image, setStringValue  (main) false (null) for other views.
//
// 6. Interface files (optional).                                   Interface.h
//    loadInterface(name, owner)       (main) builds a window from an
//        interface file (services::readInterfaceFile reads it, from
//        services::resourceFolders()); a backend without it returns an error.
//
// 7. Data folders, defaults, trust (required).       Process.h, UserDefaults.h
//    applicationSupportDirectory()    the user's application data folder.
//    standardUserDefaults(), resetStandardUserDefaults()
//        the application's defaults; the reset makes the next use read the
//        stored defaults again.
//    isProcessTrusted(), isProcessTrustedWithOptions(prompt)
//        whether synthesised input may drive the application; the backend's
//        policy (the desktop simulates a permission, Qt needs none).
//
// Shared by every backend, defined once (nothing to write):
//    platform: Object, Value, argumentsRequestTesting (the "uxtest" launch test).
//    services: processArguments, processIdentifier, operatingSystemVersionString,
//        systemLog, defaultNotificationCenter, makeSerialQueue,
//        readPropertyListDictionary, the event factories and HID state
//        (HidState.h), resource folders (Resources.h), interface-file reading
//        (InterfaceDescription.h), property-list defaults files (UserDefaults.h).
#pragma once

#include "JTK/platform/Alert.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Controls.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Interface.h"
#include "JTK/platform/Menu.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/RunLoop.h"
#include "JTK/platform/Screen.h"
#include "JTK/platform/StatusBar.h"
#include "JTK/platform/Text.h"
#include "JTK/platform/UserDefaults.h"
#include "JTK/platform/View.h"
#include "JTK/platform/Window.h"
