#pragma once

#include "Core/CObject.h"

namespace tarv {

class CAudioInterfaceClient;
class CParamBridge;

/// The names of a window in which a user edits them all at once (`ui:name-setup`): those of channels or groups, the
/// texts of the parameter behind `bridge`. Makes a row of the template `item-tag` for each in the view at `rows`, with
/// the attributes `number`, from 1, and `max-length`; its child `name` is the field. Nothing is set before `accept`.
///
/// Attributes: `bridge`, `rows` (paths), `interface-client` (default `ui.interface-client`), `item-tag`, `name-count`
/// (default: as many as the parameter holds), `max-length` (characters of a name, default 12).
/// Events that it handles:
///   accept         sets the names that differ, as one step of the history; none if none does
///   copy-names     all names to the clipboard, one a line
///   paste-names    names of the clipboard, one a line, from the first field on; further fields stay as they are
///   import-names   the host's names of the input channels, by a step "Channel label import"
/// A name is cut to its length and to the blanks around it. When the parameter becomes another one, by an undo or an
/// import, the fields show its names. Thread: that of the window.
class CNameSetup : public CObject {
public:
    /// Fails for a path where no bridge or view stands, and as the rows do.
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// What the field of a name shows, without blanks around it.
    CString name(int32_t index) const;
    int32_t nameCount() const { return count_; }

private:
    [[nodiscard]] CError* makeRows(CObject& rows);
    [[nodiscard]] CError* showNames();
    [[nodiscard]] CError* accept();
    [[nodiscard]] CError* copyNames();
    [[nodiscard]] CError* pasteNames();
    [[nodiscard]] CError* importNames();
    CString trimmed(const CString& text) const;
    CString stored(int32_t index) const;
    CParamBridge* bridge() const;
    CObject* field(int32_t index) const;
    CAudioInterfaceClient* client() const;

    int32_t count_ = 0;
};

}  // namespace tarv
