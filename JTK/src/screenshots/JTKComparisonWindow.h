// The comparison window: shows the captures of a version folder that differ
// from their accepted images, one at a time, as the accepted image with the
// differing pixels marked red; a press on the picture shows the new capture.
// A person accepts one image or all of them; accepting moves the new capture
// over the accepted file. Main thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "JTK/imaging/Image.h"
#include "JTK/platform/Interface.h"

namespace jtk::platform {
class Window;
}

namespace jtk {

class JTKComparisonWindow : public platform::InterfaceOwner,
                            public std::enable_shared_from_this<JTKComparisonWindow> {
public:
    // (accepted image, new capture)
    using ImagePair = std::pair<std::filesystem::path, std::filesystem::path>;
    struct TestComparisons {
        std::string testTag;
        std::vector<ImagePair> pairs;
    };
    // Test tag to pairs; the order is that of the version folder's listing.
    using Comparisons = std::vector<TestComparisons>;

    static constexpr const char* interfaceName = "JTKComparisonWindow";
    static constexpr const char* acceptAllMessage =
        "Are you sure you want to accept all of these these images as the official screenshots for this version?";

    // The one controller of the process, made on first use from the interface
    // file named interfaceName.
    static std::shared_ptr<JTKComparisonWindow> shared();
    // A controller whose window comes from the interface file of that name
    // when first shown; every property starts empty.
    static std::shared_ptr<JTKComparisonWindow> make(std::string interface = interfaceName);

    // Activates the application, shows the window and the first difference
    // of the version folder, or closes the window when there is none.
    void showComparisons(const std::filesystem::path& versionFolder);
    // The buttons' actions.
    void acceptImage();
    void acceptAll();

    // Test folders of the version folder (name order, hidden ones skipped)
    // that have a "temp" folder, with their pairs.
    static Comparisons scanComparisons(const std::filesystem::path& versionFolder);
    // Each file of the temp folder (name order) with the test folder's file of
    // the same name; files without a counterpart are left out.
    static std::vector<ImagePair> pairImages(const std::filesystem::path& testFolder,
                                             const std::filesystem::path& tempFolder);

    // The state on screen.
    std::weak_ptr<platform::View> currentImage;
    std::weak_ptr<platform::View> testName;
    std::optional<std::filesystem::path> goodImageURL;
    std::optional<std::filesystem::path> testImageURL;
    std::shared_ptr<const imaging::Image> originalImage;
    std::shared_ptr<const imaging::Image> badImage;
    std::shared_ptr<const imaging::Image> compositedImage;
    Comparisons comparisons;

    std::shared_ptr<platform::Window> window() const { return window_; }

    void connectOutlet(const std::string& outlet, const std::shared_ptr<platform::View>& view) override;
    void performAction(const std::string& action, const std::shared_ptr<platform::View>& sender) override;

    explicit JTKComparisonWindow(std::string interface);
    ~JTKComparisonWindow() override;

private:
    // Loads the window on first use; false (with a message) when it cannot.
    bool showWindow();
    void windowDidLoad();
    void windowWillClose();
    void close();
    void showNextComparison();
    void acceptCurrentImage();
    void show(const std::shared_ptr<const imaging::Image>& image);

    std::string interface_;
    std::shared_ptr<platform::Window> window_;
    uint64_t eventMonitor_ = 0;
    uint64_t closeObservation_ = 0;
};

}  // namespace jtk
