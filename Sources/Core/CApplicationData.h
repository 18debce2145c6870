#pragma once

#include <map>

#include "Core/CBridge.h"
#include "Core/CStreams.h"
#include "Platform/FileLock.h"

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
    /// Writes the user's file, whole or not at all, and notifies the bridges of that name on this thread, under the
    /// store's lock. If the file can't be written, the block lasts for this process only. A file that is there and
    /// can't be read as a block of that id is kept first, see keepDamaged; it isn't replaced if that fails.
    void write(const CString& name, const CByteBuffer& buffer, uint32_t id);
    /// As read, but the file first: what another program wrote meanwhile counts, and is what read gives from now on.
    void readStored(const CString& name, CByteBuffer& buffer, uint32_t id);
    /// Reads the stored block, hands it to `edit(CByteBuffer&)`, which changes it or fails, and writes the result as
    /// write does. No other update of that name, by a thread or a program, comes between. Fails as `edit` does, if
    /// another program keeps the name for longer than two seconds, and if the user's file is there but can't be opened;
    /// then nothing is written.
    template <class Edit>
    [[nodiscard]] CError* update(const CString& name, uint32_t id, Edit&& edit) {
        CFileLock lock;
        TARV_TRY(lockName(name, lock));
        CLockScope scope(linkLock());
        CByteBuffer buffer;
        TARV_TRY(readForUpdate(name, buffer, id));
        TARV_TRY(edit(buffer));
        write(name, buffer, id);
        return nullptr;
    }
    /// False if what this process wrote last under that name could not be written to the file.
    bool isOnDisk(const CString& name) const;
    /// Copies the user's file of that name, byte for byte, to the first free one of `<name>-damaged`,
    /// `<name>-damaged-2` and so on to 99, and logs that. Bytes that are kept already are not kept again. Succeeds if
    /// there is no file or nothing in it; a failure has copied nothing.
    [[nodiscard]] CError* keepDamaged(const CString& name);
    /// The embedded block alone.
    void readEmbedded(const CString& name, CByteBuffer& buffer, uint32_t id);
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
        bool isStored;  ///< the file holds it, too
    };

    void resolveFolders();
    bool makeUserFolder();
    [[nodiscard]] CError* lockName(const CString& name, CFileLock& lock);
    /// Whether a file is there; what is damaged gives an empty buffer.
    static bool readFile(const CString& path, CByteBuffer& buffer, uint32_t id);
    bool readFiles(const CString& name, CByteBuffer& buffer, uint32_t id);
    [[nodiscard]] CError* readForUpdate(const CString& name, CByteBuffer& buffer, uint32_t id);
    /// Keeps a file that is no block of that id.
    [[nodiscard]] CError* keepIfDamaged(const CString& name, uint32_t id);
    bool store(const CString& name, const CByteBuffer& buffer, uint32_t id);
    bool writeFile(const CString& path, const CByteBuffer& buffer, uint32_t id);

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

/// Calls a method of its owner, `void T::method(CCheckedObject* sender)`, at each write of one name.
template <class T>
class CApplicationDataBridge : public COwnedBridge<T> {
public:
    using COwnedBridge<T>::COwnedBridge;
    void subscribe(CApplicationData& data, const CString& name) { this->connect(data, name); }
};

}  // namespace tarv
