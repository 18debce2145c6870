#include "Audio/Client/CClientEdits.h"

#include "Audio/Parameters/CAudioParamData.h"

namespace tarv {

namespace {

CError* requirePlace(const CString& param, int32_t group, int32_t first, int32_t count) {
    if (group < 0 || first < 0 || count < 0 || count > CAudioParamData::kElementLimit) {
        TARV_FAIL(
            "@tarvstr_CClientEdits_requirePlace_InvalidPlace Parameter '%1' has no place for %2 elements from %3 on in "
            "group %4.",
            param, CString::fromInt(count), CString::fromInt(first), CString::fromInt(group));
    }
    return nullptr;
}

}  // namespace

template <class Put>
CError* CClientEdits::send(const CString& param, int32_t group, int32_t first, int32_t count,
                           const CInterfaceUndo& undo, bool isReplacing, Put&& put) const {
    TARV_TRY(requirePlace(param, group, first, count));
    const uint32_t flags =
        (isReplacing ? kIsReplacing : 0u) | (undo.isRecorded ? kIsRecorded : 0u) | (undo.isHeld ? kIsHeld : 0u);
    CMemoryWriteBuffer stream;
    TARV_TRY(putFields(stream, static_cast<uint32_t>(kSetValues), tickIdOf(sender_.clientId()), param, group, first,
                       count, flags));
    TARV_TRY(put(stream));
    TARV_TRY(putFields(stream, undo.label, undo.key));
    CByteBuffer message;
    stream.copyTo(message);
    return sender_.deliver(message);
}

CError* CClientEdits::setNumbers(const CString& param, int32_t group, int32_t first, const double* numbers,
                                 int32_t elements, int32_t elementSize, const CInterfaceUndo& undo,
                                 bool isReplacing) const {
    return send(param, group, first, elements, undo, isReplacing, [&](COutputStream& stream) -> CError* {
        for (int32_t i = 0; i < elements * elementSize; ++i) {
            TARV_TRY(putField(stream, numbers[i]));
        }
        return nullptr;
    });
}

CError* CClientEdits::setTexts(const CString& param, int32_t group, int32_t first, const CTextList& texts,
                               const CInterfaceUndo& undo, bool isReplacing) const {
    return send(param, group, first, texts.count(), undo, isReplacing, [&](COutputStream& stream) -> CError* {
        for (const CString& text : texts) {
            TARV_TRY(putField(stream, text));
        }
        return nullptr;
    });
}

}  // namespace tarv
