// Every command as a page sends it, with the expected answer and effects.

import { base64 } from '../base64.mjs';
import { configFile, logFile } from '../update/updater.mjs';

const home = '/home/user';
const workDirectory = `${home}/.local/share/Orvane/tmp`;
const report = `${home}/report.docx`;
const view = 'environmentcheck.html';
const calls = '/fakecalls';

const open = (path) => ['Open File', path];
const save = (path) => ['Save File', path];

/** An envelope without a result. */
const nothing = {};
const success = { result: 'success' };
/** A function that the result must satisfy. */
const that = (holds) => ({ holds });
const isObject = (...keys) => that((result) => keys.every((key) => key in result));
const tenProcesses = that(([processes]) => Object.keys(processes).length > 1);
const threeApplications = that((result) => result.length === 3 && '.docx' in result[0]);

const updaterCall = (option) => ['/opt/orvane/calls', option];
const checkFinding = { result: { value: base64('ok'), cmd: 'fonts', app: 'vyr' } };

/**
 * The order matters: later steps use what earlier ones leave behind. `answer` is the envelope or a
 * test of its result, `file` a file and a text that it must get, `gone` a file that must disappear,
 * `callback` the page's function that must be called, with the page if it is another one.
 */
export const steps = [
    { command: 'mousePress', answer: nothing },
    { command: 'mouseRelease', answer: nothing },
    { command: 'stoppreload', answer: success, file: [`${calls}/quickstartoffice`, 'stop'] },
    { command: 'restartpreload', answer: success, file: [`${calls}/quickstartoffice`, 'restart'] },
    { command: 'screenshots', answer: success },
    { command: 'recordscreen', answer: success, file: [`${calls}/screencap`, '0'] },
    { command: 'contentreplace', answer: success, file: [`${calls}/eptools`, '-replacefile'] },
    { command: 'apilog', answer: success, file: [`${calls}/eptools`, '-apilog'] },
    {
        command: 'exportsysinfo',
        choose: [save(`${home}/system`)],
        answer: success,
        file: [`${home}/system`, 'Linux'],
    },
    {
        command: 'exportoftenfileperm',
        choose: [save(`${home}/often`)],
        answer: success,
        file: [`${home}/often`, 'Office.conf'],
    },
    {
        command: 'exportspecialfileperm',
        choose: [open(report), save(`${home}/special`)],
        answer: success,
        file: [`${home}/special`, report],
    },
    { command: 'stratcheckenv', answer: isObject('sysinfo', 'fontinfo', 'envInfo') },
    { command: 'addconfigfile', choose: [open(report)], answer: success },
    { command: 'stratextractfileinfo', answer: isObject('report.docx') },
    { command: 'getcpuinfo', answer: tenProcesses },
    { command: 'getmemoryinfo', answer: tenProcesses },
    { command: 'getcomputermemory', answer: isObject('percentage', 'all') },
    { command: 'inputcheck', answer: that((result) => /^ERR_[A-Z_]+$/.test(result)) },
    { command: 'copytoclipboard', args: { verification: 'a text' }, answer: success },

    { command: 'getDumpState', answer: { result: { enable: true, feedback: false } } },
    {
        command: 'startDump',
        answer: success,
        write: `${workDirectory}/dump/vyr_1.dmp`,
        callback: { name: 'freshcrshpageCallBack', told: success },
    },
    {
        command: 'stopDump',
        answer: success,
        file: [`${home}/.config/Orvane/Office.conf`, '=false'],
    },
    { command: 'cleardumpdir', answer: success, gone: `${workDirectory}/dump/vyr_1.dmp` },

    { command: 'getlogfile', answer: { result: base64('checked\n') } },
    { command: 'getupdatesupport', answer: { result: true } },
    { command: 'getupdateconfig', answer: { result: { channel: 'beta' } } },
    {
        command: 'changeupdateconfig',
        args: { keyvalue: 'channel$stable' },
        answer: success,
        file: [configFile, 'channel=stable'],
    },
    { command: 'testupdate', answer: success, file: updaterCall('/from:manual') },
    { command: 'testdailyreport', answer: success, file: updaterCall('/from:lumstart') },
    { command: 'testinstallreport', answer: nothing, file: updaterCall('/sendinstallinfo:true') },
    {
        command: 'testuninstallreport',
        answer: success,
        file: updaterCall('/senduninstallinfo:true'),
    },
    { command: 'clearlogfile', answer: success, gone: logFile },

    { command: 'getdesktopiconfile', answer: isObject('icon', 'mode', 'docket') },
    {
        command: 'fixfouricon',
        answer: success,
        file: [`${home}/Desktop/vyr-office-vyr.desktop`, 'Desktop Entry'],
    },
    {
        command: 'fixoneicon',
        answer: success,
        file: [`${home}/Desktop/vyr-office-tessaly.desktop`, 'Desktop Entry'],
    },
    { command: 'getassomime', answer: threeApplications },
    { command: 'getassoopen', answer: threeApplications },
    {
        command: 'fileassorepair',
        answer: success,
        file: [`${home}/.local/share/mime/packages/Override.xml`, 'application/vyr-office.docx'],
    },

    {
        command: 'comparefont',
        args: { filepath: base64(report) },
        answer: { result: { MissFonts: base64('Arial') } },
    },
    {
        command: 'chooselayouterrorfile',
        choose: [open(report)],
        answer: { result: base64(report) },
    },
    { command: 'openlaytouerrorfile', answer: success, file: [`${calls}/xdg-open`, 'report.docx'] },
    {
        command: 'openprinterrorfile',
        choose: [open(report)],
        answer: { result: base64(report) },
        file: [`${calls}/xdg-open`, 'report.pdf'],
    },
    {
        command: 'openremoveurlcheck',
        answer: success,
        file: [`${calls}/server`, '/open'],
        args: { urlpath: 'http://127.0.0.1:8080/open', funcname: 'OpenDocumentFromServer' },
    },

    { command: 'feedbacktovyr', args: { infopage: 'layout' }, answer: nothing },
    { command: 'getcollectionpage', answer: { result: { page: 'layout', file: report } } },
    { command: 'choosesamplefile', choose: [open(report)], answer: { result: base64(report) } },
    { command: 'chooseattachment', choose: [open(report)], answer: { result: base64(report) } },
    {
        command: 'archivepackage',
        choose: [save(`${home}/feedback`)],
        args: { archiveType: 'layout', archiveDescribe: 'wrong', archiveSample: report },
        answer: { result: base64(`${home}/feedback`) },
        file: [`${calls}/xdg-open`, 'feedback.tar.gz'],
    },

    {
        command: 'startsearchfile',
        args: { keyword: 'report.docx' },
        answer: nothing,
        callback: {
            name: 'searchfilefinish',
            told: success,
            before: {
                callback: 'startsearchfileCallBack',
                result: { [base64('report.docx')]: base64(home) },
            },
        },
    },
    {
        command: 'opensearchfile',
        args: { file: `${home}/often` },
        answer: success,
        file: [`${calls}/xdg-open`, `${home}/often`],
    },

    {
        command: 'router',
        args: { page: view, type: 'vyrrunningcheck' },
        answer: success,
        callback: { name: 'hiddentipCallBack', told: { result: 'show' } },
    },
    {
        command: 'vyrenvcheck',
        page: view,
        args: { type: 'fonts', app: 'vyr', arg: '' },
        answer: success,
        callback: { name: 'returnvyrenvcheck', told: checkFinding },
    },
    { command: 'getvyrenvcheckedresult', page: view, answer: isObject('fonts-vyr') },
    {
        command: 'runfirefoxplugin',
        page: view,
        answer: success,
        file: [`${calls}/xdg-open`, 'vyrNpEnvCheck.html'],
    },
    {
        command: 'closechildwindow',
        page: view,
        args: { type: 'vyrrunningcheck' },
        answer: nothing,
        callback: { name: 'hiddentipCallBack', page: 'index.html', told: { result: 'hide' } },
    },
    { command: 'showminimized', answer: nothing },
    { command: 'closemainwindow', ends: true },
];
