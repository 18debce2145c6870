// A damaged block ends in a message; a whole one gives its bytes, and these come back when written and read again.

#include <cstdlib>

#include "Core/CStreams.h"
#include "Core/CompressedBlock.h"
#include "Tests/Fuzz/FuzzTools.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CMemoryReader reader(data, static_cast<uint32_t>(size));
    CByteBuffer bytes;
    if (isFailure(reader.readCompressedData(bytes, kTreeBlockId)))
        return 0;
    CMemoryWriteBuffer writer;
    mustSucceed(writer.writeCompressedData(bytes, kTreeBlockId));
    CByteBuffer block, again;
    writer.copyTo(block);
    CMemoryReader second(block.data(), static_cast<uint32_t>(block.count()));
    mustSucceed(second.readCompressedData(again, kTreeBlockId));
    must(sameBytes(bytes, again));
    return 0;
}
