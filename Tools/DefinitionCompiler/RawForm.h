#pragma once

#include <string>

#include "CDefinitionNode.h"
#include "CXmlSource.h"

namespace tarv {

/// The raw form is XML that describes a compiled tree exactly: `<raw>` with one `<node tag name>`, in it the
/// attributes as `<attribute name value/>` (repeated names and order survive), then the children as nodes. A template
/// definition is `<template tag name flag real-tag>` around the node that is its body. A text that XML can't hold
/// stands in hexadecimal digits under the same name with "-hex" behind it.
std::string writeRawForm(const CDefinitionNode& root);

bool isRawForm(const CXmlSource& source);
/// Reads the raw form back; expands nothing.
[[nodiscard]] CDefinitionFailure readRawForm(const CXmlSource& source, CDefinitionNode& root);

}  // namespace tarv
