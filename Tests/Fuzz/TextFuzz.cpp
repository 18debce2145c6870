// Texts from outside: decoding, numbers, templates of messages, pieces. What is decoded survives the way back.

#include "Core/CString.h"
#include "Tests/Fuzz/FuzzTools.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CString text = CString::fromUtf8(reinterpret_cast<const char*>(data), size);
    const std::string encoded = text.toUtf8();
    const CString again = CString::fromUtf8(encoded.data(), encoded.size());
    // Surrogates have no code, so the first way back may lose units; the second loses nothing.
    must(again.length() <= text.length());
    must(again.toUtf8() == encoded);

    bool isNumber = false;
    const int32_t whole = CString::toInt(text, &isNumber);
    if (isNumber)
        must(CString::toInt(CString::fromInt(whole)) == whole);
    CString::toDouble(text, &isNumber);
    CString::toBool(text, &isNumber);

    int32_t pieces = 0;
    for (const CString& piece : text.split(';', true)) {
        must(piece.indexOf(';') < 0);
        pieces += piece.length() + 1;
    }
    must(pieces == text.length() + 1 || text.isEmpty());

    CString message;
    const CString arguments[] = {text, "two"};
    message.format(text, arguments, 2);
    return 0;
}
