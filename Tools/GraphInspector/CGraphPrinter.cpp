#include "CGraphPrinter.h"

#include <algorithm>
#include <string>

#include "Audio/Graph/CAudioProcess.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Modules/CModFilter.h"
#include "Audio/Parameters/CAudioParamDef.h"

namespace tarv {

namespace {

std::string text(const CString& string) {
    return string.toUtf8();
}

std::string nameOf(const CAudioProcessBase* process, int32_t port) {
    return (process != nullptr ? text(process->name()) : std::string("*")) + "/" + std::to_string(port);
}

}  // namespace

void CGraphPrinter::indent(int depth) {
    std::fprintf(out_, "%*s", 2 * depth, "");
}

void CGraphPrinter::printInstructions() {
    std::fprintf(out_, "instructions %s\n", tarv::nameOf(usedSet()));
}

void CGraphPrinter::print(const CAudioProcessBase& process, int depth) {
    indent(depth);
    const CAudioPort& out = process.output(0);
    std::fprintf(out_, "%s  (%s)", text(process.path()).c_str(), text(process.def().tag()).c_str());
    if (process.stackIndex() >= 0) {
        std::fprintf(out_, "  element %d", process.stackIndex());
    }
    std::fprintf(out_, "  %g Hz  delay %d\n", out.rate, process.outputDelay());
    printSlots(process, depth + 1);
    printLinks(process, depth + 1);
    printSections(process, depth + 1);
    struct CVisit {
        CGraphPrinter* printer;
        int depth;
    } visit{this, depth + 1};
    process.visitChildren(
        [](void* user, CAudioProcessBase& child) {
            const auto* next = static_cast<CVisit*>(user);
            next->printer->print(child, next->depth);
        },
        &visit);
}

void CGraphPrinter::printSlots(const CAudioProcessBase& process, int depth) {
    for (int32_t i = 0; i < process.slotCount(); ++i) {
        const CAudioParamSlot* slot = process.slot(i);
        const CAudioParamAllocDef* alloc = process.def().allocAt(i);
        if (slot == nullptr || alloc == nullptr) {
            continue;
        }
        indent(depth);
        std::fprintf(out_, "slot %d %s", i, text(alloc->paramName()).c_str());
        if (!slot->data.isValid()) {
            std::fprintf(out_, " unset\n");
        } else {
            std::fprintf(out_, " =");
            printValues(slot->data, process);
            std::fprintf(out_, "  (%s)\n", slot->param != nullptr ? text(slot->param->fullName()).c_str() : "private");
        }
    }
}

void CGraphPrinter::printValues(const CAudioParamData& data, const CAudioProcessBase& process) {
    // Below a stack a process reads one element, elsewhere it may read them all.
    const bool isOne = process.stackIndex() >= 0;
    const int32_t first = isOne ? process.paramElement() : 0;
    const int32_t count = isOne ? 1 : std::max(data.elementCount(0), 1);
    for (int32_t i = 0; i < count; ++i) {
        std::fprintf(out_, " %.17g", data.value(0, first + i));
    }
}

void CGraphPrinter::printLinks(const CAudioProcessBase& process, int depth) {
    const auto* composite = dynamic_cast<const CAudioProcess*>(&process);
    if (composite == nullptr) {
        return;
    }
    for (const CAudioProcess::CLink& link : composite->links()) {
        indent(depth);
        std::fprintf(out_, "link %s -> %s\n", nameOf(link.src, link.srcPort).c_str(),
                     nameOf(link.dst, link.dstPort).c_str());
    }
    for (const CAudioBypassEvaluator* state : composite->bypassStates()) {
        indent(depth);
        std::fprintf(out_, "bypass state %d (%s): %s\n", state->def().id(),
                     text(state->def().condition().param).c_str(), state->isActive() ? "active" : "not active");
    }
}

void CGraphPrinter::printSections(const CAudioProcessBase& process, int depth) {
    const auto* filter = dynamic_cast<const CModFilter*>(&process);
    for (int32_t v = 0; filter != nullptr && v < filter->voiceCount(); ++v) {
        const CModFilterModule& module = filter->module(v);
        for (int32_t c = 0; c < module.chainCount(); ++c) {
            const CFilterChain& chain = module.chain(c);
            for (const CFilterSection& section : chain.list().sections) {
                indent(depth);
                std::fprintf(out_, "channel %d group %d: %s type %d gain %.17g", module.element(), module.group(),
                             chain.generator() != nullptr ? text(chain.generator()->name()).c_str() : "none",
                             section.type, section.gain);
                for (const double value : section.numerators) {
                    std::fprintf(out_, " %.17g", value);
                }
                std::fprintf(out_, " |");
                for (const double value : section.denominators) {
                    std::fprintf(out_, " %.17g", value);
                }
                std::fprintf(out_, "\n");
            }
        }
    }
}

}  // namespace tarv
