// Everything a test file needs:
//
//   #include <JTK/JTK.h>
//
//   JTK_PROVIDER(jtkTestDataPath) { return "/path/to/TestData"; }
//   JTK_PROVIDER(jtkScreenshotsPath) { return "/path/to/Screenshots"; }
//   JTK_TEST(testAddCountsUp) {
//       element("Add").click().click();
//       JTK_CHECK_EQ(element("Count").value(), "Count: 2");
//   }
#pragma once

#include "JTK/JTKCheck.h"
#include "JTK/JTKClass.h"
#include "JTK/JTKElement.h"
#include "JTK/JTKInput.h"
#include "JTK/JTKNotifications.h"
#include "JTK/JTKOptions.h"
#include "JTK/JTKRegistry.h"
#include "JTK/JTKScreenshots.h"
#include "JTK/JTKTestOption.h"
#include "JTK/JTKTestSuite.h"
