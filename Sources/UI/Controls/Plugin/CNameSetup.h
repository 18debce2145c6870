#pragma once

#include "Core/CObject.h"

namespace tarv {

class CAudioInterfaceClient;
class CParamBridge;

/// The names of a window in which a user edits them all at once (`ui:name-setup`): those of channels or groups, the
/// texts of the parameter behind `bridge`. Makes a row of the template `item-tag` for each in the view at `rows`, with
/// the attributes `number`, from 1, and `max-length`; its child `name` is the field. The fields are a draft: nothing is
/// set before `accept`, and nothing is set without it.
///
/// Attributes: `bridge`, `rows` (paths), `interface-client` (default `ui.interface-client`), `item-tag`, `name-count`
/// (default: as many as the parameter holds), `max-length` (characters of a name, default 12).
/// Events that it handles:
///   accept         sets the names that differ, as one step of the history; none if none does
///   copy-names     all names to the clipboard, one a line
///   paste-names    names of the clipboard, one a line, into the first fields; further fields stay as they are
///   import-names   the host's names of the input channels into the fields; a channel without one keeps its name
/// A name is cut to its length and to the blanks around it. A change by another editor, the host or the history shows
/// in the fields that nobody has changed, also in one that is being edited; a field that was changed keeps its text,
/// which `accept` sets. Thread: that of the window.
class CNameSetup : public CObject {
public:
    /// Fails for a path where no bridge or view stands, and as the rows do.
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// What the field of a name shows, without blanks around it.
    CString name(int32_t index) const;
    int32_t nameCount() const { return drafts_.count(); }

private:
    [[nodiscard]] CError* makeRows(CObject& rows);
    [[nodiscard]] CError* showNames();
    [[nodiscard]] CError* showName(CObject& field, const CString& name);
    [[nodiscard]] CError* write(int32_t index, const CString& name);
    [[nodiscard]] CError* accept();
    [[nodiscard]] CError* copyNames();
    [[nodiscard]] CError* pasteNames();
    [[nodiscard]] CError* importNames();
    CString trimmed(const CString& text, int32_t length) const;
    int32_t maxLength() const;
    CString stored(int32_t index) const;
    /// What `accept` makes of a name; one that nobody has changed stays as it is, also if it is too long.
    CString wanted(int32_t index) const;
    CString label(int32_t first, int32_t end) const;
    CParamBridge* bridge() const;
    CObject* field(int32_t index) const;
    CAudioInterfaceClient* client() const;

    struct CDraft {
        CString shown;           ///< the parameter's text that the field got last
        CString imported;        ///< the host's name that the field got last
        bool isChanged = false;  ///< found to differ when the parameter changed; follows it no more
    };
    CArray<CDraft, 16> drafts_;
};

}  // namespace tarv
