// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "api/player_link.h"
#include "platform/portal_object.h"

#include <QString>

/**
 * The portal's interface to the box, which scripts see as gSTB: the public slots are callable by
 * name, the two properties readable. Most slots write a record and give a fixed answer, so that
 * portals written for a richer box keep running; the others keep a little state, ask the receiver
 * or the window through a signal, or use the sound output, the file system or the environment.
 *
 * The order of signals, slots and properties is part of the interface. None has a default
 * argument, since each would add a method. Every slot logs first, then acts; none reports failure
 * to the portal. GUI thread.
 */
class VesprelV2 : public PortalObject
{
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy)
    Q_PROPERTY(bool IsEmulator READ IsEmulator)

public:
    /** Opens the sound device, learns who the box is and reads the decoder's video window. */
    explicit VesprelV2(QObject *parent = nullptr);

    /** Closes the sound device. */
    ~VesprelV2() override;

    bool isBusy() const;
    bool IsEmulator() const;

    /** The player that playback events are passed on to; not owned, may be null. */
    void setPlayer(PlayerLink *player) { m_player = player; }

    // Events of the receiver, brought by the window and passed on to the player. Times in ms.
    void OnPlayStarted();
    void OnPlayEnded();
    void OnAudioPids(const QString &list);
    void OnSubPids(const QString &list);
    void OnAudioPid(int pid);
    void OnSubPid(int pid);
    void setMediaProgress(int length, int position);

    /** Whether the portal asked for its keyboard button. Promised, called by nobody. */
    bool isInPortal() const;

    /** 0 stopped, 1 play requested, 2 playing, 3 paused. */
    int playState() const { return m_playState; }

    // What the portal last told of itself, for the key filter.
    int timeshiftState() const { return m_timeshiftState; }
    QString currPlace() const { return m_currPlace; }
    bool isTvMenuVisible() const { return m_tvMenuVisible; }

signals:
    void sFirstPlay();
    void OnPlay(QString url);
    void OnStop();
    void OnPause();
    void OnContinue();
    void OnSeekTime(int ms);
    void OnSeekPercent(int per); // Connected to nothing: the receiver seeks by time only.
    void VKeyboardOpen();
    void VKeyboardClose();
    void OnScreenMode(int mode);
    void OnViewPort(int x, int y, int width, int height);
    void OnShowHole();
    void OnHideHole();
    void OnAudioTrack(int pid);
    void OnSubTrack(int pid);
    void OnAudioLangs(QString pri, QString sec);
    void OnSubLangs(QString pri, QString sec);
    void OnSubOnOff(bool enable);
    void OnReboot();
    QString sGetStorageInfo();
    void OnPortalLoaded();
    void sSetAspect(int aspect);

public slots:
    // Player life and playback. Play and its forms start a URL; the others steer what plays.
    void clearMemoryCaches();
    void ClearStatistics();
    void CloseWebWindow();
    void InitPlayer();
    void DeinitPlayer();
    void Play(const QString &url);
    void Play(const QString &url, const QString &proxy);
    void PlaySolution(const QString &solution, const QString &URL);
    void PlayConfig(const QString &config);
    void Stop();
    void Pause();
    void Continue();

    // Seeking and position. The plain forms count in seconds and percent, the Ex forms in
    // milliseconds and hundredths of a percent.
    void SetPosTime(int time);
    void SetPosTimeEx(int time);
    void SetPosPercent(int prc);
    void SetPosPercentEx(int prc);
    int GetPosTime();
    int GetPosTimeEx();
    int GetPosPercent();
    int GetPosPercentEx();
    int GetMediaLen();
    int GetMediaLenEx();
    void SetSpeed(int speed);

    // Tracks, video window, picture layers and sound. Volume and gain are 0 to 100, linear.
    void SetAudioPID(int pid);
    void SetSubtitlePID(int pid);
    void SetPIG(int state, int scale, int x, int y);
    void SetAlphaLevel(int alpha);
    void SetVolume(int volume);
    void SetWebMode(bool enable, const QString &mode);
    void SetUserFlickerControl(int mode);
    void SetFlicker(int state, int flicker, int shape);
    void SetDefaultFlicker(int state);
    void SetLoop(int loop);
    void SetVideoControl(int mode);
    void SetVideoState(int state);
    void SetChromaKey(int key, int mask);
    void SetComponentMode(int mode);
    void SetMode(int mode);
    void SetMulticastProxyURL(const QString &url);
    void SetWinMode(int winNum, int mode);
    void SetTopWin(int winNum);
    int GetTopWin();
    void SetWinAlphaLevel(int winNum, int alpha);
    void SetAspect(int aspect);
    void Rotate(int angle);
    void SetMute(int mute);
    void SetMicVolume(int volume);
    int GetMicVolume();
    int GetVolume();
    int GetMute();
    void Step();
    void SetupRTSP(int type, int flags);
    void SetViewport(int xsize, int ysize, int x, int y);
    void SetViewportEx(int xSize, int ySize, int xPos, int yPos, int clipXSize, int clipYSize,
                       int clipXPos, int clipYPos, bool saveClip);

    // Playing state and identity of the box.
    bool IsPlaying();
    QString Version();
    QString GetUID();
    QString GetUID(const QString &key);
    QString GetUID(const QString &key, const QString &token);

    // Subtitles, teletext and layer transparency.
    void SetupSPdif(int mode);
    void SetSubtitles(bool enable);
    void SetSubtitlesSize(int size);
    void SetSubtitlesFont(const QString &font);
    void SetSubtitlesOffs(int offset);
    void SetSyncCorrection(int speed, int threshold);
    void SetSyncOffsetCorrection(int offset);
    void SetSyslogLevel(int level);
    void SetTeletext(bool enable);
    void SetTeletextPID(int pid);
    int GetSpeed();
    int GetAudioPID();
    int GetSubtitlePID();
    bool GetPIG();
    int GetAlphaLevel();
    int GetWinAlphaLevel(int winNum);
    void SetTransparentColor(int color);
    int GetTransparentColor();
    void IgnoreUpdates(bool ignore);

    // System actions and conditional access.
    void ExecAction(const QString &action);
    QString ExtProtocolCommand(const QString &protocol, const QString &command,
                               const QString &data);
    void SetCASType(int type);
    int SetupWebCAS(const QString &type, const QString &config);
    void SetWebCASLogging(bool enable);
    void SetCASParam(const QString &server, int port, const QString &company, int opId,
                     int errorLevel);
    void SetAdditionalCasParam(const QString &name, const QString &value);
    void LoadCASIniFile(const QString &file);
    void SetCASDescrambling(int mode);

    // Aspect, stand-by, box parameters, languages, track lists and the portal's own log.
    int GetAspect();
    void StandBy(bool enable);
    QString RDir(const QString &par);
    void SetAudioLangs(const QString &priLang, const QString &secLang);
    void SetSubtitleLangs(const QString &priLang, const QString &secLang);
    QString GetAudioPIDsEx();
    QString GetAudioPIDs();
    QString GetSubtitlePIDs();
    QString ReadCFG();
    void ResetUserFs();
    void WriteCFG(const QString &cfg);
    void WritePrefs(const QString &prefs);
    QString GetInputLang();
    void SetInputLang(const QString &lang);
    void SetUiLang(const QString &lang);
    void Debug(const QString &text);
    void SetListFilesExt(const QString &fileExts);

    // Directory listing, picture, subtitles, keyboard and buttons.
    QString ListDir(const QString &dirName);
    QString ListDir(const QString &path, bool mode);
    void SetBrightness(int brightness);
    void SetSaturation(int saturation);
    void SetContrast(int contrast);
    void SetCustomHeader(const QString &header);
    int GetBrightness();
    int GetSaturation();
    void GetContrast(int contrast);
    void DeleteAllCookies();
    void SetAudioOperationalMode(int mode);
    void SetHDMIAudioOut(int type);
    void SetDRC(int high, int low);
    void SetInternalPortalActive(bool active);
    void SetStereoMode(int mode);
    void EnableJavaScriptInterrupt(bool enable);
    void EnableMulticastProxy(bool enable);
    void ShowSubtitle(uint start, uint end, const QString &text);
    void ShowVideoImmediately(bool enable);
    void StartLocalCfg();
    void ShowVirtualKeyboard();
    void HideVirtualKeyboard();
    bool IsVirtualKeyboardActive();
    bool IsVirtualKeyboardActiveEx();
    void EnableServiceButton(bool enable);
    void EnableVKButton(bool enable);
    void EnableTvButton(bool enable);
    void EnableSpatialNavigation(bool enable);
    void EnableSetCookieFrom(const QString &domain, bool enable);
    void SetBufferSize(int milliseconds, int bytes);
    void SetBufferSize(int milliseconds);
    int GetBufferLoad();
    void SetWebProxy(const QString &host, int port, const QString &user, const QString &password,
                     const QString &exclusions);
    void ResetWebProxy();
    QString GetVideoInfo();
    QString GetMetadataInfo();
    void SetAutoFrameRate(int mode);
    void ForceHDMItoDVI(int mode);
    void LoadExternalSubtitles(const QString &url);

    // Local pages, settings of the portal, and what the box is.
    void LoadURL(const QString &url);
    void SetSubtitlesEncoding(const QString &encoding);
    QString GetEnv(const QString &args);
    bool SetEnv(const QString &args);
    QString GetDeviceSerialNumber();
    QString GetDeviceVendor();
    QString GetDeviceModel();
    QString GetDeviceModelExt();
    QString GetDeviceVersionHardware();
    QString GetDeviceMacAddress();
    QString GetDeviceActiveBank();
    QString GetDefaultUpdateUrl();
    QString GetDeviceImageVersion();
    QString GetDeviceImageDesc();
    QString GetDeviceImageVersionCurrent();
    QString GetExtProtocolList();
    QString GetHashVersion1(const QString &type, const QString &key);

    // Links, shares and files.
    bool GetLanLinkStatus();
    bool GetWifiLinkStatus();
    QString GetWifiLinkStatusEx();
    QString GetWepKey64ByPassPhrase(const QString &passPhrase);
    QString GetWepKey128ByPassPhrase(const QString &passPhrase);
    QString GetWifiGroups();
    QString ServiceControl(const QString &service, const QString &action);
    QString GetSmbGroups();
    QString GetSmbServers(const QString &group);
    QString GetSmbShares(const QString &server);
    bool IsFolderExist(const QString &fileName);
    bool IsFileUTF8Encoded(const QString &fileName);
    bool IsFileExist(const QString &fileName);
    void SendEventToPortal(const QString &event);
    bool IsWebWindowExist();
    bool IsInternalPortalActive();
    void EnableAppButton(bool enable);

    // Paths, user data, stand-by state, storage and front panel.
    QString GetSystemPaths();
    int GetTeletextPID();
    QString GetTeletextPIDs();
    QString LoadUserData(const QString &file);
    void SaveUserData(const QString &file, const QString &data);
    void ConfigNetRc(const QString &deviceName, const QString &config);
    bool GetHDMIConnectionState();
    QString GetHLSInfo();
    bool GetStandByStatus();
    QString GetStatistics();
    QString GetStorageInfo(const QString &filter);
    void StandBy(int imode);
    void setFrontPanel(const QString &text);
    void SetLedIndicatorLevels(int low, int high);
    void SetLedIndicatorMode(int mode);
    QString GetLedIndicatorState();

    // Teletext and its character sets.
    void SetTeletextViewport(int x, int y, int width, int height);
    void TeletextCommand(int code);
    void TeletextShow(bool show);
    void TeletextTransparency(int transparency);
    int GetForceTtxSubCharset();
    int ForceTtxSubCharset(int charset, bool bauto);
    int GetDefaultTtxSubCharset();
    int DefaultTtxSubCharset(int charset, bool bauto);
    int GetDefaultTtxCharset();
    int DefaultTtxCharset(int charset, bool bauto);
    int GetForceTtxCharset();
    int ForceTtxCharset(int charset, bool bauto);

    // Display, caches, screen saver and power-down.
    void Set3DConversionMode(int mode);
    int Get3DConversionMode();
    void SetCheckSSLCertificate(int mode);
    void SetNetRcStatus(bool enable);
    void SetObjectCacheCapacities(int minDead, int maxDead, int total);
    void SetScreenSaverTime(int seconds);
    void SetScreenSaverInitAttr(const QString &attributes);
    void SetSettingsInitAttr(const QString &attributes);
    void SetAutoPowerDownTime(int seconds);
    void SetAutoPowerDownInitAttr(const QString &attributes);
    void SetSubtitlesColor(int color);

    // Network answers and player options. Gateway and name server are fixed texts, kept so.
    QString GetNetworkGateways();
    QString GetNetworkNameServers();
    QString GetPppoeIp();
    QString GetNetworkWifiMac();
    bool GetPppoeLinkStatus();
    void SetSlidingMode(int mode);
    void SetNativeStringMode(bool enable);
    bool SetDisplayMode(const QString &mode, bool reset);
    void SetPCRModeEnabled(bool enable);
    void SetPixmapCacheSize(int size);
    bool SaveFile(const QString &filePath, const QString &data);
    QString GetPlayerOption(const QString &name);
    int SetPlayerOption(const QString &name, const QString &value);
    int ResetPlayerOptions();

    // What the key filter reads: the portal's script refreshes these before each channel key.
    void SetTimeshiftState(int state);
    void SetCurrPlace(const QString &place);
    void SetTVMenuState(int hide);

private:
    enum PlayState { Stopped = 0, PlayRequested = 1, Playing = 2, Paused = 3 };

    void openSound();
    void closeSound();
    void readDecoderWindow();
    void updateNetworkConfiguration();
    void clearMedia();

    QString m_serialNumber;
    QString m_macAddress;
    QString m_ipAddress;
    // The decoder's window at the start, promised and read by nothing so far.
    QString m_origDstLeft;
    QString m_origDstTop;
    QString m_origDstWidth;
    QString m_origDstHeight;
    QString m_audioPids;
    QString m_subtitlePids;
    int m_audioPid = 0;
    int m_subtitlePid = 0;
    int m_topWin = 0;
    bool m_vkActive = false;
    bool m_standBy = false;
    bool m_playing = false;
    int m_mediaLen = 0;  // ms
    int m_mediaPos = 0;  // ms
    int m_volume = -1;   // Last set or read, -1 before; the answers come from the device.
    bool m_loop = false; // What the portal asked for; the receiver knows no loop.
    bool m_vkButton = false;
    int m_playState = Stopped;
    QString m_listFilesExt;
    bool m_portalLoadedSent = false;
    bool m_firstPlaySent = false;
    PlayerLink *m_player = nullptr;
    int m_timeshiftState = 0;
    QString m_currPlace;
    bool m_tvMenuVisible = false;
};
