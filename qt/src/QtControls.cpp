// What a program sets on the standard controls, over Qt's: an image view is a
// QLabel showing a pixmap, scaled down to fit and centred (never enlarged, so
// a small capture stays sharp); a text field is a QLineEdit, a label a QLabel.
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>

#include "JTK/platform/Controls.h"
#include "QtViews.h"
#include "QtWrappers.h"

namespace jtk::platform {

namespace {

QPixmap pixmapOf(const imaging::Image& image, QSize room) {
    QImage picture(image.pixels.data(), static_cast<int>(image.width), static_cast<int>(image.height),
                   static_cast<int>(image.width * 4), QImage::Format_RGBA8888);
    QPixmap pixmap = QPixmap::fromImage(picture);  // a deep copy: the image may go before the label
    if (pixmap.width() > room.width() || pixmap.height() > room.height())
        pixmap = pixmap.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return pixmap;
}

}  // namespace

bool setImage(View& imageView, std::shared_ptr<const imaging::Image> image) {
    auto* view = dynamic_cast<qt::QtView*>(&imageView);
    auto* label = qobject_cast<QLabel*>(qt::widgetOf(imageView));
    if (!view || !label) return false;
    label->setAlignment(Qt::AlignCenter);
    if (image && image->width > 0 && image->height > 0)
        label->setPixmap(pixmapOf(*image, label->size()));
    else
        label->clear();
    view->setShownImage(std::move(image));
    return true;
}

std::shared_ptr<const imaging::Image> image(const View& imageView) {
    auto* view = dynamic_cast<const qt::QtView*>(&imageView);
    return view ? view->shownImage() : nullptr;
}

bool setStringValue(View& textField, const std::string& text) {
    QWidget* widget = qt::widgetOf(textField);
    if (auto* field = qobject_cast<QLineEdit*>(widget)) {
        field->setText(QString::fromStdString(text));
        return true;
    }
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        label->setText(QString::fromStdString(text));
        return true;
    }
    return false;
}

}  // namespace jtk::platform
