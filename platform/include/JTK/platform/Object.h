// The object runtime every platform object shares: the unqualified runtime
// class name, and methods found and performed by name. Applications extend
// their classes by adding methods (such as hbViewName) by name, never by
// inheriting an interface.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "JTK/platform/Value.h"

namespace jtk::platform {

class Object : public std::enable_shared_from_this<Object> {
public:
    using Method = std::function<Value(Object& self, const Value& argument)>;

    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    // Runtime class name without namespace or template decoration. The
    // default is the C++ dynamic type; an object that stands for another
    // toolkit's object (a wrapper) answers with that object's class.
    virtual std::string className() const;
    // The default looks in the object's own methods, then in the methods
    // added to its class name. A wrapper adds what its toolkit's object
    // can perform by name.
    virtual bool respondsToSelector(const std::string& selector) const;
    // Performs a method by name; none when the object does not respond.
    virtual Value performSelector(const std::string& selector, const Value& argument = {});
    // The platform's text for the object: class name and address.
    virtual std::string description() const;

    // Adds (or replaces) a method of this object.
    void addMethod(const std::string& selector, Method method);
    // Adds a method to every object whose runtime class name is className.
    static void addClassMethod(const std::string& className, const std::string& selector, Method method);

private:
    const Method* findMethod(const std::string& selector) const;
    std::map<std::string, Method> methods_;
};

// Unqualified name of a demangled C++ type name: "a::b::C<int>" gives "C".
std::string unqualifiedTypeName(const std::string& demangled);

}  // namespace jtk::platform
