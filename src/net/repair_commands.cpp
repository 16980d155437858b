// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/repair_commands.h"

namespace quayline {

namespace {

// What follows the program's name.
// clang-format off
constexpr const char* kBrowserFiles[] = {
    "acelpdec.ax /s", "actxprxy.dll /s", "asctrls.ocx /s", "browseui.dll /I /s", "browseui.dll /s",
    "browsewm.dll /s", "cdfview.dll /s", "comcat.dll /s", "comctl32.dll /i /s", "corpol.dll /s",
    "CRSWPP.DLL /s", "cryptdlg.dll /s", "CRYPTDLG.DLL /s", "cryptext.dll /s", "CSSEQCHK.DLL /s",
    "danim.dll /s", "datime.dll /s", "Daxctle.ocx /s", "dhtmled.ocx /s", "digest.dll /i /s",
    "directdb.dll /s", "dispex.dll /s", "DSSENH.DLL /s", "dxmasf.dll /s", "dxtmsft.dll /s",
    "dxtrans.dll /s", "FLUPL.OCX /s", "FPWPP.DLL /s", "FTPWPP.DLL /s", "Gpkcsp.dll /s",
    "hhctrl.ocx /s", "hlink.dll /s", "hmmapi.dll /s", "icmfilter.dll /s", "IEDKCS32.DLL /s",
    "iepeers.dll /s", "iesetup.dll /i /s", "ils.dll /s", "imgutil.dll /s", "inetcfg.dll /s",
    "inetcomm.dll /s", "inetcpl.cpl /i /s", "INITPKI.DLL /s", "inseng.dll /s", "jscript.dll /s",
    "l3codecx.ax /s", "laprxy.dll /s", "licdll.dll /s", "licmgr10.dll /s", "lmrt.dll /s",
    "mlang.dll /s", "mmefxe.ocx /s", "mobsync.dll /s", "mpg4ds32.ax /s",
    "msapsspc.dll /SspcCreateSspiReg /s", "msdxm.ocx /s", "mshtml.dll /i /s", "mshtml.dll /s",
    "mshtmled.dll /s", "msident.dll /s", "msieftp.dll /s", "msnsspc.dll /SspcCreateSspiReg /s",
    "msoe.dll /s", "msoeacct.dll /s", "MSR2C.DLL /s", "msrating.dll /s", "MSTIME.DLL /s",
    "msxml.dll /s", "occache.dll /i /s", "occache.dll /s", "oeimport.dll /s", "oemiglib.dll /s",
    "oleaut32.dll /s", "plugin.ocx /s", "pngfilt.dll /s", "POSTWPP.DLL /s", "regwizc.dll /s",
    "rsabase.dll /s", "RSAENH.DLL /s", "Sccbase.dll /s", "scrobj.dll /s",
    "scrrun.dll mstinit.exe /setup /s", "sendmail.dll /s", "setupwbv.dll /s", "shdoc401.dll /i /s",
    "shdoc401.dll /s", "shdocvw.dll /I /s", "shdocvw.dll /s", "Slbcsp.dll /s", "softpub.dll /s",
    "tdc.ocx /s", "thumbvw.dll /s", "trialoc.dll /s", "triedit.dll /s", "urlmon.dll /i /s",
    "urlmon.dll /s", "vbscript.dll /s", "vgx.dll /s", "voxmsdec.ax /s", "wab32.dll /s",
    "wabfind.dll /s", "wabimp.dll /s", "webcheck.dll /s", "WEBPOST.DLL /s", "wininet.dll /i /s",
    "wininet.dll /s", "WINTRUST.DLL /s", "WPWIZDLL.DLL /s", "wshext.dll /s", "wshom.ocx /s",
    "xmsconf.ocx /s",
};

constexpr const char* kDatabaseFiles[] = {
    "msjet40.dll /s", "msjtes40.dll /i /s", "msjetoledb40.dll /s", "mswstr10.dll /s",
    "msjint40.dll /s", "msjter40.dll /s", "MSJINT35.DLL /s", "MSJET35.DLL /s", "MSJT4JLT.DLL /s",
    "MSJTER35.DLL /s",
};

// In both folders of what programs share.
constexpr const char* kSharedFiles[] = {
    "\\Microsoft Shared\\DAO\\DAO350.DLL", "\\Microsoft Shared\\DAO\\dao360.dll",
    "\\System\\ado\\msader15.dll", "\\System\\ado\\msado15.dll", "\\System\\ado\\msadomd.dll",
    "\\System\\ado\\msador15.dll", "\\System\\ado\\msadox.dll", "\\System\\ado\\msadrh15.dll",
    "\\System\\ado\\msjro.dll", "\\System\\msadc\\msadce.dll", "\\System\\msadc\\msadcer.dll",
    "\\System\\msadc\\msadcf.dll", "\\System\\msadc\\msadcfr.dll", "\\System\\msadc\\msadco.dll",
    "\\System\\msadc\\msadcor.dll", "\\System\\msadc\\msadcs.dll", "\\System\\msadc\\msadds.dll",
    "\\System\\msadc\\msaddsr.dll", "\\System\\msadc\\msdaprst.dll",
    "\\System\\msadc\\msdarem.dll", "\\System\\msadc\\msdaremr.dll",
    "\\System\\msadc\\msdfmap.dll", "\\System\\Ole DB\\msdadc.dll",
    "\\System\\Ole DB\\msdaenum.dll", "\\System\\Ole DB\\msdaer.dll",
    "\\System\\Ole DB\\MSDAERR.DLL", "\\System\\Ole DB\\MSDAIPP.DLL",
    "\\System\\Ole DB\\msdaora.dll", "\\System\\Ole DB\\msdaorar.dll",
    "\\System\\Ole DB\\msdaosp.dll", "\\System\\Ole DB\\MSDAPML.DLL",
    "\\System\\Ole DB\\msdaps.dll", "\\System\\Ole DB\\msdasc.dll",
    "\\System\\Ole DB\\msdasql.dll", "\\System\\Ole DB\\msdasqlr.dll",
    "\\System\\Ole DB\\MSDATL2.DLL", "\\System\\Ole DB\\msdatl3.dll",
    "\\System\\Ole DB\\msdatt.dll", "\\System\\Ole DB\\msdaurl.dll",
    "\\System\\Ole DB\\MSDMENG.DLL", "\\System\\Ole DB\\MSDMINE.DLL",
    "\\System\\Ole DB\\MSJTOR35.DLL", "\\System\\Ole DB\\MSMDCB80.DLL",
    "\\System\\Ole DB\\MSMDGD80.DLL", "\\System\\Ole DB\\MSMDUN80.DLL",
    "\\System\\Ole DB\\MSOLAP80.DLL", "\\System\\Ole DB\\MSOLUI80.DLL",
    "\\System\\Ole DB\\msxactps.dll", "\\System\\Ole DB\\oledb32.dll",
    "\\System\\Ole DB\\oledb32r.dll", "\\System\\Ole DB\\OLEDB32X.DLL",
    "\\System\\Ole DB\\sqloledb.dll", "\\System\\Ole DB\\sqlxmlx.dll",
};
// clang-format on

const QString kProgram = QStringLiteral("regsvr32 ");
const QString kCommon64 = QStringLiteral("%CommonProgramFiles%");
const QString kCommon32 = QStringLiteral("%CommonProgramFiles(x86)%");

}  // namespace

QStringList BrowserRepairCommands() {
  QStringList lines;
  for (const char* file : kBrowserFiles) {
    lines.append(kProgram + QLatin1String(file));
  }
  return lines;
}

QStringList DatabaseRepairCommands() {
  QStringList lines;
  for (const char* file : kDatabaseFiles) {
    lines.append(kProgram + QLatin1String(file));
  }
  for (const QString& folder : {kCommon32, kCommon64}) {
    for (const char* file : kSharedFiles) {
      lines.append(kProgram + QLatin1Char('"') + folder + QLatin1String(file) +
                   QLatin1String("\" /s"));
    }
  }
  return lines;
}

QString WithCommonFolders(QString line, const CommonFolders& folders) {
  const qsizetype quote = line.indexOf(QLatin1Char('"'));
  if (quote < 0) {
    return line;
  }
  const QString path = line.mid(quote + 1);
  if (path.startsWith(kCommon64)) {
    line.replace(kCommon64, folders.of_this_system);
  } else if (path.startsWith(kCommon32)) {
    line.replace(kCommon32, folders.of_32_bits);
  }
  return line;
}

}  // namespace quayline
