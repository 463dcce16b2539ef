#include "QtObjectRuntime.h"

#include <QAbstractButton>
#include <QAction>
#include <QDateTime>
#include <QDockWidget>
#include <QGroupBox>
#include <QMenu>
#include <QMetaMethod>
#include <QWidget>
#include <chrono>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <mutex>

namespace jtk::qt {

namespace {

// The methods an application adds to its classes by name.
bool isApplicationSelector(const std::string& selector) {
    return selector == "hbViewName" || selector == "hbViewValue" || selector == "hbModelObject";
}

int invokableIndex(const QObject* object, const std::string& selector) {
    return object->metaObject()->indexOfMethod((selector + "()").c_str());
}

QVariant invoke(QObject* object, int index) {
    QMetaMethod method = object->metaObject()->method(index);
    if (method.returnType() == QMetaType::Void) {
        method.invoke(object, Qt::DirectConnection);
        return {};
    }
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QVariant result{QMetaType(method.returnType())};
#else
    QVariant result(method.returnType(), nullptr);
#endif
    if (!method.invoke(object, Qt::DirectConnection, QGenericReturnArgument(method.typeName(), result.data())))
        return {};
    return result;
}

// A class Qt keeps to itself (declared in one of its source files, such as
// the spin box of an input dialog) answers as its nearest public Qt class: a
// test can name only what Qt documents. Qt exports the meta-object of each
// public class from its libraries and not those of its own private classes.
bool isPrivateQtClass(const QMetaObject* meta) {
    Dl_info info{};
    if (!dladdr(meta, &info) || !info.dli_fname || !std::strstr(info.dli_fname, "/libQt")) return false;
    return info.dli_saddr != meta;
}

const QMetaObject* publicMetaObject(const QMetaObject* meta) {
    static std::mutex mutex;
    static auto* known = new std::map<const QMetaObject*, const QMetaObject*>;  // never destroyed
    std::lock_guard lock(mutex);
    auto [found, added] = known->emplace(meta, meta);
    if (added)
        while (found->second->superClass() && isPrivateQtClass(found->second)) found->second = found->second->superClass();
    return found->second;
}

}  // namespace

std::string toStdString(const QString& text) { return text.toStdString(); }

QString toQString(const std::string& text) { return QString::fromStdString(text); }

QString withoutMnemonics(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && i + 1 < text.size()) ++i;  // "&&" is a literal '&'
        else if (text[i] == QLatin1Char('&')) continue;
        plain += text[i];
    }
    return plain;
}

std::string qtClassName(const QObject* object) {
    if (!object) return {};
    std::string name = publicMetaObject(object->metaObject())->className();
    if (auto colon = name.rfind("::"); colon != std::string::npos) name.erase(0, colon + 2);
    return name;
}

bool qtRespondsToSelector(const QObject* object, const std::string& selector) {
    if (!object) return false;
    if (selector == "title") return qtTitle(object).has_value();
    if (!isApplicationSelector(selector)) return false;
    if (invokableIndex(object, selector) >= 0 || object->property(selector.c_str()).isValid()) return true;
    return selector == "hbViewName" && !object->objectName().isEmpty();
}

platform::Value qtPerformSelector(QObject* object, const std::string& selector) {
    if (!object) return {};
    if (selector == "title") {
        auto title = qtTitle(object);
        return title ? platform::Value(*title) : platform::Value();
    }
    if (!isApplicationSelector(selector)) return {};
    if (int index = invokableIndex(object, selector); index >= 0) return valueFromVariant(invoke(object, index));
    if (QVariant property = object->property(selector.c_str()); property.isValid()) return valueFromVariant(property);
    if (selector == "hbViewName" && !object->objectName().isEmpty()) return toStdString(object->objectName());
    return {};
}

std::optional<std::string> qtTitle(const QObject* object) {
    if (auto* button = qobject_cast<const QAbstractButton*>(object)) return toStdString(withoutMnemonics(button->text()));
    if (auto* group = qobject_cast<const QGroupBox*>(object)) return toStdString(withoutMnemonics(group->title()));
    if (auto* menu = qobject_cast<const QMenu*>(object)) return toStdString(withoutMnemonics(menu->title()));
    if (auto* action = qobject_cast<const QAction*>(object)) return toStdString(withoutMnemonics(action->text()));
    if (auto* dock = qobject_cast<const QDockWidget*>(object)) return toStdString(withoutMnemonics(dock->windowTitle()));
    if (auto* widget = qobject_cast<const QWidget*>(object); widget && widget->isWindow()) {
        QString title = widget->windowTitle();
        title.remove(QStringLiteral("[*]"));  // the modified-document placeholder
        return toStdString(title);
    }
    return std::nullopt;
}

platform::Value valueFromVariant(const QVariant& variant) {
    switch (variant.userType()) {
        case QMetaType::UnknownType:
            return {};
        case QMetaType::Bool:
            return variant.toBool();
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
            return static_cast<int64_t>(variant.toLongLong());
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            return static_cast<int64_t>(variant.toULongLong());
        case QMetaType::Double:
        case QMetaType::Float:
            return variant.toDouble();
        case QMetaType::QString:
        case QMetaType::QChar:
        case QMetaType::QUrl:
            return toStdString(variant.toString());
        case QMetaType::QByteArray: {
            QByteArray bytes = variant.toByteArray();
            return platform::Data{std::vector<uint8_t>(bytes.begin(), bytes.end())};
        }
        case QMetaType::QDateTime: {
            auto ms = std::chrono::milliseconds(variant.toDateTime().toMSecsSinceEpoch());
            return platform::Date{std::chrono::system_clock::time_point(ms)};
        }
        case QMetaType::QStringList:
        case QMetaType::QVariantList: {
            platform::ValueList list;
            for (const QVariant& item : variant.toList()) list.push_back(valueFromVariant(item));
            return list;
        }
        case QMetaType::QVariantMap: {
            platform::ValueDictionary dictionary;
            const QVariantMap map = variant.toMap();
            for (auto it = map.begin(); it != map.end(); ++it)
                dictionary.emplace_back(toStdString(it.key()), valueFromVariant(it.value()));
            return dictionary;
        }
        default:
            // Another type that reads as text (an enum, a key sequence) is
            // its text; anything else has no platform value.
            if (variant.canConvert<QString>()) return toStdString(variant.toString());
            return {};
    }
}

QVariant variantFromValue(const platform::Value& value) {
    using Kind = platform::Value::Kind;
    switch (value.kind()) {
        case Kind::boolean:
            return *value.boolean();
        case Kind::integer:
            return static_cast<qlonglong>(*value.integer());
        case Kind::real:
            return *value.real();
        case Kind::text:
            return toQString(*value.text());
        case Kind::list: {
            QVariantList list;
            for (const auto& item : *value.list()) list.push_back(variantFromValue(item));
            return list;
        }
        case Kind::dictionary: {
            QVariantMap map;
            for (const auto& [key, item] : *value.dictionary())
                if (const std::string* text = key.text()) map.insert(toQString(*text), variantFromValue(item));
            return map;
        }
        case Kind::date: {
            auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(value.date()->time.time_since_epoch());
            return QDateTime::fromMSecsSinceEpoch(ms.count(), Qt::UTC);
        }
        case Kind::data: {
            const auto& bytes = value.data()->bytes;
            return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
        }
        case Kind::none:
        case Kind::object:
            return {};
    }
    return {};
}

}  // namespace jtk::qt
