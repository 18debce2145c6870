#pragma once

namespace tarv {

/// The top folder of the project's sources, without a slash at its end.
extern const char* const kSourceFolder;
/// The built library. Wine has the root folder as drive Z.
extern const char* const kPluginFile;
/// The same library under the name of its stereo face.
extern const char* const kStereoFile;
/// The same code with an editor for host tests.
extern const char* const kHostedEditorFile;
/// The built compiler of the definitions; empty for Windows.
extern const char* const kDefinitionCompilerFile;

}  // namespace tarv
