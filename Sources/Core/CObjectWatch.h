#pragma once

namespace tarv {

class CObject;

/// Reports whether an object of the tree has been destroyed since the watch was made: for code that calls handlers,
/// which may destroy the object that they belong to. Lives on the stack, so that the last one made ends first.
/// Thread: that of the object's tree.
class CObjectWatch {
public:
    explicit CObjectWatch(CObject& object);
    ~CObjectWatch();
    CObjectWatch(const CObjectWatch&) = delete;
    CObjectWatch& operator=(const CObjectWatch&) = delete;

    /// False from the beginning of the object's destruction on.
    bool isAlive() const { return object_ != nullptr; }

private:
    friend class CObject;

    CObject* object_;
    CObjectWatch* outer_;
};

}  // namespace tarv
