#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <initializer_list>
#include <memory>
#include <utility>

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Attributes of an object under test, by name.
using CTexts = std::initializer_list<std::pair<const char*, const char*>>;

/// A tree of filter generators, built object by object as the loader builds it. One at a time: it fills the process's
/// table of creators.
class CFilterTree {
public:
    CFilterTree();
    ~CFilterTree();

    CObject* root() { return root_.get(); }
    /// Adds a child and loads it (init, initChildren). It is left open: without an application a finished object is
    /// read-only. The failure, null for none; the caller takes it over.
    CError* add(CObject* parent, const char* tag, const char* name, CTexts attributes, CObject*& child);
    /// Adds a generator under the root; a failure fails the test.
    CAudioFilterGen& generator(const char* tag, const char* name, CTexts attributes = {});
    CAudioFilterGen& generator(const char* tag, CTexts attributes = {}) { return generator(tag, "gen", attributes); }
    /// A serial set with items of (path, adjust).
    CAudioFilterGen& serial(const char* name, CTexts items, CTexts attributes = {});
    /// The first line of the failure that adding gives, empty for success.
    CString failure(CObject* parent, const char* tag, CTexts attributes);

private:
    std::unique_ptr<CObject> root_;
};

/// The sections of one design call.
CSectionList designed(const CAudioFilterGen& generator, double rate, std::initializer_list<double> values);

/// The transfer function of a list at a frequency, from the arithmetic that the section types stand for (not from the
/// numerators where the kernel of a type ignores them). Not for types 22.
std::complex<double> response(const CSectionList& list, double frequency, double rate);
double responseDb(const CSectionList& list, double frequency, double rate);

/// Whether all poles lie inside the unit circle and all numbers are finite (biquads and one-pole sections).
bool isStable(const CSectionList& list);

/// 20 log10.
double toDb(double factor);
double fromDb(double db);

}  // namespace tarv
