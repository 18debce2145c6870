#include "Tests/TestPaths.h"

namespace tarv {

// The only file of the tests that differs between two clones: all others are the same to a compiler cache.
const char* const kSourceFolder = TARV_SOURCE_DIR;
const char* const kPluginFile = TARV_PLUGIN_FILE;
const char* const kStereoFile = TARV_STEREO_FILE;
const char* const kHostedEditorFile = TARV_HOSTED_EDITOR_FILE;
const char* const kDefinitionCompilerFile = TARV_DEFINITION_COMPILER;

}  // namespace tarv
