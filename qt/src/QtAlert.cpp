// Alerts as QMessageBox: buttons in the order added, runModal answers 1000
// for the first. The box runs Qt's own modal loop, in which the backend's main
// queue and common-modes timers keep running.
#include <QMessageBox>
#include <QPushButton>

#include <vector>

#include "JTK/platform/Alert.h"
#include "QtObjectRuntime.h"

namespace jtk::platform {

namespace {

constexpr int firstButtonReturn = 1000;

class QtAlert : public Alert {
public:
    void setMessageText(const std::string& text) override { messageText_ = text; }
    void setInformativeText(const std::string& text) override { informativeText_ = text; }
    void addButtonWithTitle(const std::string& title) override { buttonTitles_.push_back(title); }

    int runModal() override {
        QMessageBox box;
        box.setText(qt::toQString(messageText_));
        box.setInformativeText(qt::toQString(informativeText_));
        if (buttonTitles_.empty()) buttonTitles_.push_back("OK");
        std::vector<QPushButton*> buttons;
        for (const auto& title : buttonTitles_)
            buttons.push_back(box.addButton(qt::toQString(title), QMessageBox::AcceptRole));
        box.setDefaultButton(buttons.front());
        box.exec();
        for (size_t index = 0; index < buttons.size(); ++index)
            if (box.clickedButton() == buttons[index]) return firstButtonReturn + int(index);
        return firstButtonReturn;  // closed without a button: the default one
    }

private:
    std::string messageText_;
    std::string informativeText_;
    std::vector<std::string> buttonTitles_;
};

}  // namespace

std::unique_ptr<Alert> makeAlert() { return std::make_unique<QtAlert>(); }

}  // namespace jtk::platform
