#include "Product/CreatorTable.h"

#include <iterator>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Converters/CAudioParamConverterBW.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Converters/CAudioParamConverterGain.h"
#include "Audio/Converters/CAudioParamConverterPercent.h"
#include "Audio/Converters/CAudioParamConverterRatio.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Converters/CAudioParamConverterTime.h"
#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Filters/CAudioFilterAPF1Gen.h"
#include "Audio/Filters/CAudioFilterBypassGen.h"
#include "Audio/Filters/CAudioFilterFIRHilbGen.h"
#include "Audio/Filters/CAudioFilterFIRLPGen.h"
#include "Audio/Filters/CAudioFilterFIRLimGen.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Filters/CAudioFilterGenArrayItem.h"
#include "Audio/Filters/CAudioFilterHBFGen.h"
#include "Audio/Filters/CAudioFilterLPHP1Gen.h"
#include "Audio/Filters/CAudioFilterMagnusGen.h"
#include "Audio/Filters/CAudioFilterRBJGen.h"
#include "Audio/Filters/CAudioFilterSerialGen.h"
#include "Audio/Filters/CAudioFilterSerialGenItem.h"
#include "Audio/Graph/CAudioProcessBypassStateDef.h"
#include "Audio/Graph/CAudioProcessDef.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"
#include "Audio/Instance/CAudioCCTable.h"
#include "Audio/Messages/CAudioInterfaceBaseConnector.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Audio/Modules/CModBypass.h"
#include "Audio/Modules/CModDecimator.h"
#include "Audio/Modules/CModDenorm.h"
#include "Audio/Modules/CModDownsampler.h"
#include "Audio/Modules/CModFilter.h"
#include "Audio/Modules/CModGain.h"
#include "Audio/Modules/CModInterpolator.h"
#include "Audio/Modules/CModMSCoder.h"
#include "Audio/Modules/CModMetaTube.h"
#include "Audio/Modules/CModMute.h"
#include "Audio/Modules/CModNode.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Modules/CModRouter.h"
#include "Audio/Modules/CModUpsampler.h"
#include "Audio/Modules/CQPLEXContextObject.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamDef.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Visuals/CAudioVizCollector.h"
#include "Core/CAttrDoubler.h"
#include "Core/CGlobalSettings.h"
#include "Core/CObject.h"
#include "Core/CObjectEventBridge.h"
#include "Core/CSharedAttribute.h"
#include "Core/CTimer.h"
#include "UI/Binding/CColorSwatch.h"
#include "UI/Binding/CMinMax.h"
#include "UI/Binding/CParamBridgeAudio.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Binding/CUIParamController.h"
#include "UI/Binding/CUIParamConverter.h"
#include "UI/Binding/CViewStateSwitch.h"
#include "UI/Controls/Buttons/CButton.h"
#include "UI/Controls/Buttons/CButtonAB.h"
#include "UI/Controls/Buttons/CControlArray.h"
#include "UI/Controls/Buttons/CGroupLabel.h"
#include "UI/Controls/Buttons/CReadOut.h"
#include "UI/Controls/Buttons/CScrollerBar.h"
#include "UI/Controls/Buttons/CSelectorGroup.h"
#include "UI/Controls/Buttons/CSelectorOversampling.h"
#include "UI/Controls/Buttons/CSelectorPalette.h"
#include "UI/Controls/Buttons/CSelectorScale.h"
#include "UI/Controls/Buttons/CWinDrag.h"
#include "UI/Controls/Lists/CValueListAudio.h"
#include "UI/Controls/Plugin/CEditorMemory.h"
#include "UI/Controls/Plugin/CHistory.h"
#include "UI/Controls/Plugin/CNameSetup.h"
#include "UI/Controls/Plugin/CParamGroupController.h"
#include "UI/Controls/Plugin/CPluginControl.h"
#include "UI/Controls/Plugin/CVizExchange.h"
#include "UI/Controls/Presets/CDynamicListPresets.h"
#include "UI/Controls/Presets/CPresetManager.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CControlSurfaceGroup.h"
#include "UI/Controls/Surface/CRuler.h"
#include "UI/Controls/Surface/CSurfaceHairlines.h"
#include "UI/Resources/CDataSetObject.h"
#include "UI/Resources/CFontObject.h"
#include "UI/Text/CEditBox.h"
#include "UI/Text/CPopupList.h"
#include "UI/Text/CTextView.h"
#include "UI/Text/CTextViewAutoScroll.h"
#include "UI/Text/CVirtualKeyboard.h"
#include "UI/Views/CFrame.h"
#include "UI/Views/CGradient.h"
#include "UI/Views/CPicture.h"
#include "UI/Views/CView.h"
#include "UI/Windows/CUIEventBridge.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

// A tag without a row makes a plain object.
const CCreatorRow kCreatorRows[] = {
    {"audio:audio-env", &createObject<CAudioEnv>, nullptr},
    {"audio:cctable", &createObject<CAudioCCTable>, nullptr},
    {"audio:cvt-bw", &createObject<CAudioParamConverterBW>, nullptr},
    {"audio:cvt-enum", &createObject<CAudioParamConverterEnum>, &CAudioParamConverterEnum::initClass},
    {"audio:cvt-freq", &createObject<CAudioParamConverterFreq>, nullptr},
    {"audio:cvt-gain", &createObject<CAudioParamConverterGain>, &CAudioParamConverterGain::initClass},
    {"audio:cvt-percent", &createObject<CAudioParamConverterPercent>, nullptr},
    {"audio:cvt-ratio", &createObject<CAudioParamConverterRatio>, &CAudioParamConverterRatio::initClass},
    {"audio:cvt-real", &createObject<CAudioParamConverterReal>, &CAudioParamConverterReal::initClass},
    {"audio:cvt-text", &createObject<CAudioParamConverterText>, nullptr},
    {"audio:cvt-time", &createObject<CAudioParamConverterTime>, nullptr},
    {"audio:ext-param", &createObject<CAudioExtParam>, nullptr},
    {"audio:ext-param-list", &createObject<CAudioExtParamList>, nullptr},
    {"audio:fltgen-apf1", &createObject<CAudioFilterAPF1Gen>, nullptr},
    {"audio:fltgen-array", &createObject<CAudioFilterGenArray>, nullptr},
    {"audio:fltgen-array-item", &createObject<CAudioFilterGenArrayItem>, nullptr},
    {"audio:fltgen-bypass", &createObject<CAudioFilterBypassGen>, nullptr},
    {"audio:fltgen-firhilb", &createObject<CAudioFilterFIRHilbGen>, nullptr},
    {"audio:fltgen-firlim", &createObject<CAudioFilterFIRLimGen>, nullptr},
    {"audio:fltgen-firlp", &createObject<CAudioFilterFIRLPGen>, nullptr},
    {"audio:fltgen-hbf", &createObject<CAudioFilterHBFGen>, nullptr},
    {"audio:fltgen-lphp1", &createObject<CAudioFilterLPHP1Gen>, nullptr},
    {"audio:fltgen-magnus", &createObject<CAudioFilterMagnusGen>, nullptr},
    {"audio:fltgen-rbj", &createObject<CAudioFilterRBJGen>, nullptr},
    {"audio:fltgen-serial", &createObject<CAudioFilterSerialGen>, nullptr},
    {"audio:fltgen-serial-item", &createObject<CAudioFilterSerialGenItem>, nullptr},
    {"audio:interface-base", &createObject<CAudioInterfaceBase>, nullptr},
    {"audio:interface-base-connector-vst", &createObject<CAudioInterfaceBaseConnectorVST>, nullptr},
    {"audio:interface-client", &createObject<CAudioInterfaceClient>, &CAudioInterfaceClient::initClass},
    {"audio:interface-client-connector-vst", &createObject<CAudioInterfaceClientConnectorVST>,
     &CAudioInterfaceClientConnector::initClass},
    {"audio:modBypass", &createObject<CModBypassDef>, nullptr},
    {"audio:modDecimator", &createObject<CModDecimatorDef>, nullptr},
    {"audio:modDenorm", &createObject<CModDenormDef>, nullptr},
    {"audio:modDownsampler", &createObject<CModDownsamplerDef>, nullptr},
    {"audio:modFilter", &createObject<CModFilterDef>, nullptr},
    {"audio:modGain", &createObject<CModGainDef>, nullptr},
    {"audio:modInterpolator", &createObject<CModInterpolatorDef>, nullptr},
    {"audio:modMSCoder", &createObject<CModMSCoderDef>, nullptr},
    {"audio:modMetaTube", &createObject<CModMetaTubeDef>, nullptr},
    {"audio:modMute", &createObject<CModMuteDef>, nullptr},
    {"audio:modNode", &createObject<CModNodeDef>, nullptr},
    {"audio:modOutput", &createObject<CModOutputDef>, nullptr},
    {"audio:modRouter", &createObject<CModRouterDef>, nullptr},
    {"audio:modUpsampler", &createObject<CModUpsamplerDef>, nullptr},
    {"audio:param", &createObject<CAudioParamDef>, nullptr},
    {"audio:param-alloc", &createObject<CAudioParamAllocDef>, nullptr},
    {"audio:param-collector", &createObject<CAudioParamCollector>, nullptr},
    {"audio:param-registry", &createObject<CAudioParamRegistry>, nullptr},
    {"audio:param-remap", &createObject<CAudioParamRemapDef>, nullptr},
    {"audio:process-bypass-state", &createObject<CAudioProcessBypassStateDef>, nullptr},
    {"audio:process-def", &createObject<CAudioProcessDef>, nullptr},
    {"audio:process-link", &createObject<CAudioProcessLinkDef>, nullptr},
    {"audio:qplex-context", &createObject<CQPLEXContextObject>, nullptr},
    {"audio:viz-collector", &createObject<CAudioVizCollector>, nullptr},
    {"brushset", &createObject<CBrushSetObject>, nullptr},
    {"core:attr-doubler", &createObject<CAttrDoubler>, &CAttrDoubler::initClass},
    {"core:global-settings", &createObject<CGlobalSettings>, &CGlobalSettings::initClass},
    {"core:object", &createObject<CObject>, nullptr},
    {"core:shared-attribute", &createObject<CSharedAttribute>, &CSharedAttribute::initClass},
    {"core:timer", &createObject<CTimer>, &CTimer::initClass},
    {"font", &createObject<CFontObject>, nullptr},
    {"imageset", &createObject<CImageSetObject>, nullptr},
    {"palette", &createObject<CPaletteObject>, nullptr},
    {"ui:button-ab", &createObject<CButtonAB>, &CButtonAB::initClass},
    {"ui:button-base", &createObject<CButton>, &CButton::initClass},
    {"ui:color-swatch", &createObject<CColorSwatch>, nullptr},
    {"ui:control-array", &createObject<CControlArray>, &CControlArray::initClass},
    {"ui:control-surface", &createObject<CControlSurface>, &CControlSurface::initClass},
    {"ui:control-surface-group", &createObject<CControlSurfaceGroup>, &CControlSurfaceGroup::initClass},
    {"ui:dynamic-list-presets", &createObject<CDynamicListPresets>, &CDynamicListPresets::initClass},
    {"ui:editbox", &createObject<CEditBox>, &CEditBox::initClass},
    {"ui:editor-memory", &createObject<CEditorMemory>, &CEditorMemory::initClass},
    {"ui:editor-memory-item", &createObject<CEditorMemoryItem>, &CEditorMemoryItem::initClass},
    {"ui:frame", &createObject<CFrame>, &CFrame::initClass},
    {"ui:group-label", &createObject<CGroupLabel>, &CGroupLabel::initClass},
    {"ui:history", &createObject<CHistory>, &CHistory::initClass},
    {"ui:min-max", &createObject<CMinMax>, &CMinMax::initClass},
    {"ui:name-setup", &createObject<CNameSetup>, &CNameSetup::initClass},
    {"ui:overlay-gradient", &createObject<CGradient>, &CGradient::initClass},
    {"ui:param-bridge", &createObject<CParamBridgeAudio>, &CParamBridgeAudio::initClass},
    {"ui:param-group-controller", &createObject<CParamGroupController>, &CParamGroupController::initClass},
    {"ui:param-group-selector", &createObject<CParamGroupSelector>, &CParamGroupSelector::initClass},
    {"ui:picture", &createObject<CPicture>, &CPicture::initClass},
    {"ui:plugin-control", &createObject<CPluginControl>, &CPluginControl::initClass},
    {"ui:popup-list", &createObject<CPopupList>, &CPopupList::initClass},
    {"ui:preset-manager", &createObject<CPresetManager>, &CPresetManager::initClass},
    {"ui:readout", &createObject<CReadOut>, &CReadOut::initClass},
    {"ui:ruler", &createObject<CRuler>, &CRuler::initClass},
    {"ui:scroller-bar", &createObject<CScrollerBar>, &CScrollerBar::initClass},
    {"ui:selector-group", &createObject<CSelectorGroup>, &CSelectorGroup::initClass},
    {"ui:selector-oversampling", &createObject<CSelectorOversampling>, &CSelectorOversampling::initClass},
    {"ui:selector-palette", &createObject<CSelectorPalette>, &CSelectorPalette::initClass},
    {"ui:selector-scale", &createObject<CSelectorScale>, &CSelectorScale::initClass},
    {"ui:surface-hairlines", &createObject<CSurfaceHairlines>, &CView::initClass},
    {"ui:textview", &createObject<CTextView>, &CTextView::initClass},
    {"ui:textview-auto-scroll", &createObject<CTextViewAutoScroll>, &CTextViewAutoScroll::initClass},
    {"ui:ui-event-bridge", &createObject<CUIEventBridge>, nullptr},
    {"ui:ui-param", &createObject<CUIParam>, &CUIParam::initClass},
    {"ui:ui-param-controller", &createObject<CUIParamController>, &CUIParamController::initClass},
    {"ui:ui-param-converter", &createObject<CUIParamConverter>, &CUIParamConverter::initClass},
    {"ui:value-list", &createObject<CValueListAudio>, &CValueListAudio::initClass},
    {"ui:value-list-manual", &createObject<CValueList>, &CValueList::initClass},
    {"ui:view", &createObject<CView>, &CView::initClass},
    {"ui:view-color-slot", &createObject<CViewColorSlot>, &CViewColorSlot::initClass},
    {"ui:view-command", &createObject<CViewCommand>, nullptr},
    {"ui:view-state", &createObject<CViewState>, nullptr},
    {"ui:view-state-switch", &createObject<CViewStateSwitch>, &CViewStateSwitch::initClass},
    {"ui:virtual-keyboard", &createObject<CVirtualKeyboard>, &CVirtualKeyboard::initClass},
    {"ui:viz-exchange", &createObject<CVizExchange>, &CVizExchange::initClass},
    {"ui:window-drag", &createObject<CWinDrag>, &CWinDrag::initClass},
    {"ui:window-renderer", &createObject<CWindow>, &CWindow::initClass},
    {"ui:window-shared-data", &createObject<CWindowSharedData>, &CWindowSharedData::initClass},
};
const int32_t kCreatorRowCount = static_cast<int32_t>(std::size(kCreatorRows));

}  // namespace tarv
