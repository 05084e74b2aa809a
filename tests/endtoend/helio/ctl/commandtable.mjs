/** Every command in the order in which the bridge declares it. */
export const COMMANDS = [
    'mousePress', 'mouseRelease', 'closemainwindow', 'showminimized', 'router', 'stoppreload',
    'restartpreload', 'screenshots', 'recordscreen', 'contentreplace', 'apilog', 'exportsysinfo',
    'exportoftenfileperm', 'exportspecialfileperm', 'closechildwindow', 'chooselayouterrorfile',
    'comparefont', 'openlaytouerrorfile', 'getDumpState', 'startDump', 'stopDump', 'cleardumpdir',
    'openprinterrorfile', 'getcpuinfo', 'getmemoryinfo', 'getcomputermemory', 'getlogfile',
    'getupdatesupport', 'getupdateconfig', 'testupdate', 'clearlogfile', 'testdailyreport',
    'testuninstallreport', 'testinstallreport', 'changeupdateconfig', 'getdesktopiconfile',
    'fixfouricon', 'fixoneicon', 'getassoopen', 'getassomime', 'fileassorepair',
    'openremoveurlcheck', 'getvyrenvcheckedresult', 'runfirefoxplugin', 'vyrenvcheck',
    'copytoclipboard', 'stratcheckenv', 'stratextractfileinfo', 'addconfigfile', 'inputcheck',
    'feedbacktovyr', 'getcollectionpage', 'choosesamplefile', 'archivepackage', 'chooseattachment',
    'opensearchfile', 'startsearchfile',
];
