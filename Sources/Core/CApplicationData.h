#pragma once

#include <map>

#include "Core/CBridge.h"
#include "Core/CStreams.h"

namespace tarv {

/// A store of named compressed blocks in the user's data folder, with the embedded resource "<prefix><name>" behind
/// it. Shared by all instances of the process; any thread, but not the audio thread. Failures are dropped: what
/// cannot be read is empty.
class CApplicationData : public CBridgeBase {
public:
    /// `subPath`: below the system's folder for application data, ending in '/'.
    CApplicationData(const CString& subPath, const CString& resourcePrefix);

    /// The block of that name and id: what was written last in this process, otherwise the user's file, otherwise the
    /// embedded one. A damaged user file gives an empty buffer, too.
    void read(const CString& name, CByteBuffer& buffer, uint32_t id);
    /// Writes the user's file, whole or not at all, and tells the bridges of that name on this thread, under the
    /// store's lock. Where the file can't be written, the block stands for this process alone.
    void write(const CString& name, const CByteBuffer& buffer, uint32_t id);
    /// Without access, read gives empty buffers and write does nothing.
    void setFileAccess(bool allowed);
    /// Forgets the folders and what was written in this process, so that the next use begins anew.
    void reset();

    /// The form in which single settings are kept: one text in a block of id 'dstr'. `fallback` stands for no value.
    CString readText(const CString& name, const CString& fallback);
    void writeText(const CString& name, const CString& text);

private:
    struct CRecent {
        uint32_t id;
        CByteBuffer bytes;
    };

    void resolveFolders();
    /// Whether a file is there; what is damaged gives an empty buffer.
    static bool readFile(const CString& path, CByteBuffer& buffer, uint32_t id);
    bool readFiles(const CString& name, CByteBuffer& buffer, uint32_t id);
    void writeFile(const CString& path, const CByteBuffer& buffer, uint32_t id);

    CString subPath_;
    CString prefix_;
    CString userFolder_;
    CString commonFolder_;
    bool foldersResolved_ = false;
    bool foldersFailed_ = false;
    bool foldersExist_ = false;
    bool fileAccess_ = true;
    std::map<CString, CRecent, std::less<CString>, CHeapAllocator<std::pair<const CString, CRecent>>> recent_;
};

/// Data of all the maker's plug-ins.
class CGlobalData : public CApplicationData {
public:
    CGlobalData();
    static CGlobalData& instance();
};

/// Data of this plug-in.
class CLocalData : public CApplicationData {
public:
    CLocalData();
    static CLocalData& instance();
};

/// Tells a method of its owner, `void T::method(CCheckedObject* sender)`, of each write of one name.
template <class T>
class CApplicationDataBridge : public COwnedBridge<T> {
public:
    using COwnedBridge<T>::COwnedBridge;
    void subscribe(CApplicationData& data, const CString& name) { this->connect(data, name); }
};

}  // namespace tarv
