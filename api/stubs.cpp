// SPDX-License-Identifier: Apache-2.0
/*
 * The slots that only write their record: portals written for a richer box call them, and each
 * answers what such a portal can go on with.
 */
#include "api/vesprelv2.h"
#include "platform/log_record.h"

// clang-format off: a line a slot, so that the list reads at a glance.

void VesprelV2::clearMemoryCaches() { logRecord("clearMemoryCaches", "()"); }
void VesprelV2::ClearStatistics() { logRecord("ClearStatistics", "()"); }
void VesprelV2::CloseWebWindow() { logRecord("CloseWebWindow", "()"); }
void VesprelV2::DeinitPlayer() { logRecord("DeinitPlayer", "()"); }
void VesprelV2::SetSpeed(int speed) { logRecord("SetSpeed", "(): ", speed); }
void VesprelV2::SetAlphaLevel(int alpha) { logRecord("SetAlphaLevel", "(): ", alpha); }
void VesprelV2::SetWebMode(bool, const QString &) { logRecord("SetWebMode", "()"); }
void VesprelV2::SetUserFlickerControl(int mode)
{
    logRecord("SetUserFlickerControl", "(): ", mode);
}
void VesprelV2::SetFlicker(int state, int flicker, int shape)
{
    logRecord("SetFlicker", "(): ", state, flicker, shape);
}
void VesprelV2::SetDefaultFlicker(int state) { logRecord("SetDefaultFlicker", "(): ", state); }
void VesprelV2::SetVideoControl(int mode) { logRecord("SetVideoControl", "(): ", mode); }
void VesprelV2::SetVideoState(int state) { logRecord("SetVideoState", "(): ", state); }
void VesprelV2::SetChromaKey(int key, int mask) { logRecord("SetChromaKey", "(): ", key, mask); }
void VesprelV2::SetComponentMode(int) { logRecord("SetComponentMode", "(): "); }
void VesprelV2::SetMode(int mode) { logRecord("SetMode", "(): ", mode); }
void VesprelV2::SetMulticastProxyURL(const QString &) { logRecord("SetMulticastProxyURL", "(): "); }
void VesprelV2::SetWinMode(int winNum, int mode) { logRecord("SetWinMode", "(): ", winNum, mode); }
void VesprelV2::SetWinAlphaLevel(int winNum, int alpha)
{
    logRecord("SetWinAlphaLevel", "(): ", winNum, alpha);
}
void VesprelV2::Rotate(int angle) { logRecord("Rotate", "(): ", angle); }
void VesprelV2::SetMicVolume(int volume) { logRecord("SetMicVolume", "(): ", volume); }
int VesprelV2::GetMicVolume() { return loggedAnswer(0, "GetMicVolume", "()"); }
void VesprelV2::Step() { logRecord("Step", "()"); }
void VesprelV2::SetupRTSP(int type, int flags) { logRecord("SetupRTSP", "(): ", type, flags); }
void VesprelV2::SetupSPdif(int mode) { logRecord("SetupSPdif", "():", mode); }
void VesprelV2::SetSubtitlesSize(int size) { logRecord("SetSubtitlesSize", "():", size); }
void VesprelV2::SetSubtitlesFont(const QString &font)
{
    logRecord("SetSubtitlesFont", "():", font);
}
void VesprelV2::SetSubtitlesOffs(int offset) { logRecord("SetSubtitlesOffs", "():", offset); }
void VesprelV2::SetSyncCorrection(int, int) { logRecord("SetSyncCorrection", "():"); }
void VesprelV2::SetSyncOffsetCorrection(int) { logRecord("SetSyncOffsetCorrection", "():"); }
void VesprelV2::SetSyslogLevel(int) { logRecord("SetSyslogLevel", "():"); }
void VesprelV2::SetTeletext(bool) { logRecord("SetTeletext", "():"); }
void VesprelV2::SetTeletextPID(int) { logRecord("SetTeletextPID", "():"); }
int VesprelV2::GetSpeed() { return loggedAnswer(1, "GetSpeed", "(): 1"); }
bool VesprelV2::GetPIG() { return loggedAnswer(true, "GetPIG", "()"); }
int VesprelV2::GetAlphaLevel() { return loggedAnswer(0, "GetAlphaLevel", "()"); }
int VesprelV2::GetWinAlphaLevel(int) { return loggedAnswer(0, "GetWinAlphaLevel", "()"); }
void VesprelV2::SetTransparentColor(int color) { logRecord("SetTransparentColor", "():", color); }
int VesprelV2::GetTransparentColor() { return loggedAnswer(0, "GetTransparentColor", "()"); }
void VesprelV2::IgnoreUpdates(bool ignore) { logRecord("IgnoreUpdates", "():", ignore); }
QString VesprelV2::ExtProtocolCommand(const QString &, const QString &, const QString &)
{
    return loggedAnswer(QString(), "ExtProtocolCommand", "():");
}
void VesprelV2::SetCASType(int type) { logRecord("SetCASType", "():", type); }
int VesprelV2::SetupWebCAS(const QString &, const QString &)
{
    return loggedAnswer(0, "SetupWebCAS", "():");
}
void VesprelV2::SetWebCASLogging(bool) { logRecord("SetWebCASLogging", "():"); }
void VesprelV2::SetCASParam(const QString &server, int port, const QString &company, int opId,
                            int errorLevel)
{
    logRecord("SetCASParam", "():", server, port, company, opId, errorLevel);
}
void VesprelV2::SetAdditionalCasParam(const QString &name, const QString &value)
{
    logRecord("SetAdditionalCasParam", "():", name, value);
}
void VesprelV2::LoadCASIniFile(const QString &file) { logRecord("LoadCASIniFile", "():", file); }
void VesprelV2::SetCASDescrambling(int mode) { logRecord("SetCASDescrambling", "():", mode); }
int VesprelV2::GetAspect() { return loggedAnswer(0, "GetAspect", "():"); }
void VesprelV2::StandBy(bool enable) { logRecord("StandBy", "():", enable); }
void VesprelV2::ResetUserFs() { logRecord("ResetUserFs", "():"); }
void VesprelV2::WritePrefs(const QString &prefs) { logRecord("WritePrefs", "():", prefs); }
QString VesprelV2::GetInputLang() { return loggedAnswer(QString(), "GetInputLang", "():"); }
void VesprelV2::SetInputLang(const QString &) { logRecord("SetInputLang", "():"); }
void VesprelV2::SetUiLang(const QString &) { logRecord("SetUiLang", "():"); }
void VesprelV2::SetBrightness(int brightness) { logRecord("SetBrightness", "():", brightness); }
void VesprelV2::SetSaturation(int saturation) { logRecord("SetSaturation", "():", saturation); }
void VesprelV2::SetContrast(int contrast) { logRecord("SetContrast", "():", contrast); }
void VesprelV2::SetCustomHeader(const QString &) { logRecord("SetCustomHeader", "():"); }
int VesprelV2::GetBrightness() { return loggedResult(0, "GetBrightness", "():"); }
int VesprelV2::GetSaturation() { return loggedResult(0, "GetSaturation", "():"); }
void VesprelV2::GetContrast(int contrast) { logRecord("GetContrast", "():", contrast); }
void VesprelV2::DeleteAllCookies() { logRecord("DeleteAllCookies", "()"); }
void VesprelV2::SetAudioOperationalMode(int) { logRecord("SetAudioOperationalMode", "()"); }
void VesprelV2::SetHDMIAudioOut(int) { logRecord("SetHDMIAudioOut", "()"); }
void VesprelV2::SetDRC(int, int) { logRecord("SetDRC", "()"); }
void VesprelV2::SetInternalPortalActive(bool) { logRecord("SetInternalPortalActive", "()"); }
void VesprelV2::SetStereoMode(int) { logRecord("SetStereoMode", "()"); }
void VesprelV2::EnableJavaScriptInterrupt(bool) { logRecord("EnableJavaScriptInterrupt", "()"); }
void VesprelV2::EnableMulticastProxy(bool) { logRecord("EnableMulticastProxy", "()"); }
void VesprelV2::ShowSubtitle(uint, uint, const QString &) { logRecord("ShowSubtitle", "()"); }
void VesprelV2::ShowVideoImmediately(bool) { logRecord("ShowVideoImmediately", "()"); }
void VesprelV2::StartLocalCfg() { logRecord("StartLocalCfg", "()"); }
void VesprelV2::EnableServiceButton(bool enable)
{
    logRecord("EnableServiceButton", "():", enable);
}
void VesprelV2::EnableTvButton(bool) { logRecord("EnableTvButton", "():"); }
void VesprelV2::EnableSpatialNavigation(bool) { logRecord("EnableSpatialNavigation", "()"); }
void VesprelV2::EnableSetCookieFrom(const QString &, bool)
{
    logRecord("EnableSetCookieFrom", "()");
}
void VesprelV2::SetBufferSize(int, int) { logRecord("SetBufferSize", "()"); }
void VesprelV2::SetBufferSize(int) { logRecord("SetBufferSize", "()"); }
int VesprelV2::GetBufferLoad() { return loggedAnswer(0, "GetBufferLoad", "()"); }
void VesprelV2::SetWebProxy(const QString &host, int port, const QString &user,
                            const QString &password, const QString &exclusions)
{
    logRecord("SetWebProxy", "():", host, port, user, password, exclusions);
}
void VesprelV2::ResetWebProxy() { logRecord("ResetWebProxy", "()"); }
QString VesprelV2::GetVideoInfo() { return loggedAnswer(QString(), "GetVideoInfo", "()"); }
QString VesprelV2::GetMetadataInfo() { return loggedAnswer(QString(), "GetMetadataInfo", "()"); }
void VesprelV2::SetAutoFrameRate(int) { logRecord("SetAutoFrameRate", "()"); }
void VesprelV2::ForceHDMItoDVI(int) { logRecord("ForceHDMItoDVI", "()"); }
void VesprelV2::LoadExternalSubtitles(const QString &) { logRecord("LoadExternalSubtitles", "()"); }
void VesprelV2::SetSubtitlesEncoding(const QString &) { logRecord("SetSubtitlesEncoding", "()"); }
QString VesprelV2::GetWepKey64ByPassPhrase(const QString &)
{
    return loggedAnswer(QString(), "GetWepKey64ByPassPhrase", "()");
}
QString VesprelV2::GetWepKey128ByPassPhrase(const QString &)
{
    return loggedAnswer(QString(), "GetWepKey128ByPassPhrase", "()");
}
QString VesprelV2::GetWifiGroups() { return loggedAnswer(QString(), "GetWifiGroups", "()"); }
QString VesprelV2::ServiceControl(const QString &, const QString &)
{
    return loggedAnswer(QString(), "ServiceControl", "()");
}
QString VesprelV2::GetSmbGroups() { return loggedAnswer(QString(), "GetSmbGroups", "()"); }
QString VesprelV2::GetSmbServers(const QString &)
{
    return loggedAnswer(QString(), "GetSmbServers", "()");
}
QString VesprelV2::GetSmbShares(const QString &)
{
    return loggedAnswer(QString(), "GetSmbShares", "()");
}
void VesprelV2::SendEventToPortal(const QString &event)
{
    logRecord("SendEventToPortal", "(): ", event);
}
bool VesprelV2::IsWebWindowExist() { return loggedAnswer(true, "IsWebWindowExist", "()"); }
bool VesprelV2::IsInternalPortalActive()
{
    return loggedAnswer(true, "IsInternalPortalActive", "()");
}
void VesprelV2::EnableAppButton(bool enable) { logRecord("EnableAppButton", "():", enable); }
int VesprelV2::GetTeletextPID() { return loggedAnswer(8192, "GetTeletextPID", "():"); }
QString VesprelV2::GetTeletextPIDs()
{
    return loggedAnswer(QString("[]"), "GetTeletextPIDs", "():");
}
void VesprelV2::ConfigNetRc(const QString &deviceName, const QString &config)
{
    logRecord("ConfigNetRc", "():", deviceName, config);
}
bool VesprelV2::GetHDMIConnectionState()
{
    return loggedResult(true, "GetHDMIConnectionState", "():");
}
QString VesprelV2::GetHLSInfo() { return loggedAnswer(QString("{}"), "GetHLSInfo", "()"); }
QString VesprelV2::GetStatistics() { return loggedAnswer(QString("{}"), "GetStatistics", "():"); }
void VesprelV2::setFrontPanel(const QString &text) { logRecord("setFrontPanel", "():", text); }
void VesprelV2::SetLedIndicatorLevels(int low, int high)
{
    logRecord("SetLedIndicatorLevels", "():", low, high);
}
void VesprelV2::SetLedIndicatorMode(int mode) { logRecord("SetLedIndicatorMode", "():", mode); }
QString VesprelV2::GetLedIndicatorState()
{
    return loggedAnswer(QString("{}"), "GetLedIndicatorState", "():");
}
void VesprelV2::SetTeletextViewport(int, int, int, int) { logRecord("SetTeletextViewport", "():"); }
void VesprelV2::TeletextCommand(int) { logRecord("TeletextCommand", "():"); }
void VesprelV2::TeletextShow(bool) { logRecord("TeletextShow", "():"); }
void VesprelV2::TeletextTransparency(int) { logRecord("TeletextTransparency", "():"); }
int VesprelV2::GetForceTtxSubCharset() { return loggedAnswer(0, "GetForceTtxSubCharset", "():"); }
int VesprelV2::ForceTtxSubCharset(int charset, bool)
{
    return loggedAnswer(charset, "ForceTtxSubCharset", "():");
}
int VesprelV2::GetDefaultTtxSubCharset()
{
    return loggedAnswer(0, "GetDefaultTtxSubCharset", "():");
}
int VesprelV2::DefaultTtxSubCharset(int, bool)
{
    return loggedAnswer(0, "DefaultTtxSubCharset", "():");
}
int VesprelV2::GetDefaultTtxCharset() { return loggedAnswer(0, "GetDefaultTtxCharset", "():"); }
int VesprelV2::DefaultTtxCharset(int, bool) { return loggedAnswer(0, "DefaultTtxCharset", "():"); }
int VesprelV2::GetForceTtxCharset() { return loggedAnswer(0, "GetForceTtxCharset", "():"); }
int VesprelV2::ForceTtxCharset(int charset, bool)
{
    return loggedAnswer(charset, "ForceTtxCharset", "():");
}
void VesprelV2::Set3DConversionMode(int mode) { logRecord("Set3DConversionMode", "():", mode); }
int VesprelV2::Get3DConversionMode() { return loggedResult(0, "Get3DConversionMode", "():"); }
void VesprelV2::SetCheckSSLCertificate(int mode)
{
    logRecord("SetCheckSSLCertificate", "():", mode);
}
void VesprelV2::SetNetRcStatus(bool enable) { logRecord("SetNetRcStatus", "():", enable); }
void VesprelV2::SetObjectCacheCapacities(int minDead, int maxDead, int total)
{
    logRecord("SetObjectCacheCapacities", "():", minDead, maxDead, total);
}
void VesprelV2::SetScreenSaverTime(int) { logRecord("SetScreenSaverTime", "():"); }
void VesprelV2::SetScreenSaverInitAttr(const QString &)
{
    logRecord("SetScreenSaverInitAttr", "():");
}
void VesprelV2::SetSettingsInitAttr(const QString &) { logRecord("SetSettingsInitAttr", "():"); }
void VesprelV2::SetAutoPowerDownTime(int) { logRecord("SetAutoPowerDownTime", "():"); }
void VesprelV2::SetAutoPowerDownInitAttr(const QString &)
{
    logRecord("SetAutoPowerDownInitAttr", "():");
}
void VesprelV2::SetSubtitlesColor(int color) { logRecord("SetSubtitlesColor", "():", color); }
void VesprelV2::SetSlidingMode(int mode) { logRecord("SetSlidingMode", "():", mode); }
void VesprelV2::SetNativeStringMode(bool enable)
{
    logRecord("SetNativeStringMode", "():", enable);
}
bool VesprelV2::SetDisplayMode(const QString &, bool)
{
    return loggedAnswer(true, "SetDisplayMode", "():");
}
void VesprelV2::SetPCRModeEnabled(bool) { logRecord("SetPCRModeEnabled", "():"); }
void VesprelV2::SetPixmapCacheSize(int) { logRecord("SetPixmapCacheSize", "():"); }
QString VesprelV2::GetPlayerOption(const QString &)
{
    return loggedAnswer(QString(), "GetPlayerOption", "():");
}
int VesprelV2::SetPlayerOption(const QString &, const QString &)
{
    return loggedAnswer(0, "SetPlayerOption", "():");
}
int VesprelV2::ResetPlayerOptions() { return loggedAnswer(0, "ResetPlayerOptions", "():"); }
