// Every command as a page sends it, with the expected answer and effects.

import { base64 } from '../base64.mjs';
import { CONFIG, LOG } from '../update/updater.mjs';

const HOME = '/home/user';
const WORK = `${HOME}/.local/share/Orvane/tmp`;
const REPORT = `${HOME}/report.docx`;
const VIEW = 'environmentcheck.html';
const CALLS = '/fakecalls';

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
export const STEPS = [
    { command: 'mousePress', answer: nothing },
    { command: 'mouseRelease', answer: nothing },
    { command: 'stoppreload', answer: success, file: [`${CALLS}/quickstartoffice`, 'stop'] },
    { command: 'restartpreload', answer: success, file: [`${CALLS}/quickstartoffice`, 'restart'] },
    { command: 'screenshots', answer: success },
    { command: 'recordscreen', answer: success, file: [`${CALLS}/screencap`, '0'] },
    { command: 'contentreplace', answer: success, file: [`${CALLS}/eptools`, '-replacefile'] },
    { command: 'apilog', answer: success, file: [`${CALLS}/eptools`, '-apilog'] },
    {
        command: 'exportsysinfo',
        choose: [save(`${HOME}/system`)],
        answer: success,
        file: [`${HOME}/system`, 'Linux'],
    },
    {
        command: 'exportoftenfileperm',
        choose: [save(`${HOME}/often`)],
        answer: success,
        file: [`${HOME}/often`, 'Office.conf'],
    },
    {
        command: 'exportspecialfileperm',
        choose: [open(REPORT), save(`${HOME}/special`)],
        answer: success,
        file: [`${HOME}/special`, REPORT],
    },
    { command: 'stratcheckenv', answer: isObject('sysinfo', 'fontinfo', 'envInfo') },
    { command: 'addconfigfile', choose: [open(REPORT)], answer: success },
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
        write: `${WORK}/dump/vyr_1.dmp`,
        callback: { name: 'freshcrshpageCallBack', told: success },
    },
    {
        command: 'stopDump',
        answer: success,
        file: [`${HOME}/.config/Orvane/Office.conf`, '=false'],
    },
    { command: 'cleardumpdir', answer: success, gone: `${WORK}/dump/vyr_1.dmp` },

    { command: 'getlogfile', answer: { result: base64('checked\n') } },
    { command: 'getupdatesupport', answer: { result: true } },
    { command: 'getupdateconfig', answer: { result: { channel: 'beta' } } },
    {
        command: 'changeupdateconfig',
        args: { keyvalue: 'channel$stable' },
        answer: success,
        file: [CONFIG, 'channel=stable'],
    },
    { command: 'testupdate', answer: success, file: updaterCall('/from:manual') },
    { command: 'testdailyreport', answer: success, file: updaterCall('/from:lumstart') },
    { command: 'testinstallreport', answer: nothing, file: updaterCall('/sendinstallinfo:true') },
    {
        command: 'testuninstallreport',
        answer: success,
        file: updaterCall('/senduninstallinfo:true'),
    },
    { command: 'clearlogfile', answer: success, gone: LOG },

    { command: 'getdesktopiconfile', answer: isObject('icon', 'mode', 'docket') },
    {
        command: 'fixfouricon',
        answer: success,
        file: [`${HOME}/Desktop/vyr-office-vyr.desktop`, 'Desktop Entry'],
    },
    {
        command: 'fixoneicon',
        answer: success,
        file: [`${HOME}/Desktop/vyr-office-tessaly.desktop`, 'Desktop Entry'],
    },
    { command: 'getassomime', answer: threeApplications },
    { command: 'getassoopen', answer: threeApplications },
    {
        command: 'fileassorepair',
        answer: success,
        file: [`${HOME}/.local/share/mime/packages/Override.xml`, 'application/vyr-office.docx'],
    },

    {
        command: 'comparefont',
        args: { filepath: base64(REPORT) },
        answer: { result: { MissFonts: base64('Arial') } },
    },
    {
        command: 'chooselayouterrorfile',
        choose: [open(REPORT)],
        answer: { result: base64(REPORT) },
    },
    { command: 'openlaytouerrorfile', answer: success, file: [`${CALLS}/xdg-open`, 'report.docx'] },
    {
        command: 'openprinterrorfile',
        choose: [open(REPORT)],
        answer: { result: base64(REPORT) },
        file: [`${CALLS}/xdg-open`, 'report.pdf'],
    },
    {
        command: 'openremoveurlcheck',
        answer: success,
        file: [`${CALLS}/server`, '/open'],
        args: { urlpath: 'http://127.0.0.1:8080/open', funcname: 'OpenDocumentFromServer' },
    },

    { command: 'feedbacktovyr', args: { infopage: 'layout' }, answer: nothing },
    { command: 'getcollectionpage', answer: { result: { page: 'layout', file: REPORT } } },
    { command: 'choosesamplefile', choose: [open(REPORT)], answer: { result: base64(REPORT) } },
    { command: 'chooseattachment', choose: [open(REPORT)], answer: { result: base64(REPORT) } },
    {
        command: 'archivepackage',
        choose: [save(`${HOME}/feedback`)],
        args: { archiveType: 'layout', archiveDescribe: 'wrong', archiveSample: REPORT },
        answer: { result: base64(`${HOME}/feedback`) },
        file: [`${CALLS}/xdg-open`, 'feedback.tar.gz'],
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
                result: { [base64('report.docx')]: base64(HOME) },
            },
        },
    },
    {
        command: 'opensearchfile',
        args: { file: `${HOME}/often` },
        answer: success,
        file: [`${CALLS}/xdg-open`, `${HOME}/often`],
    },

    {
        command: 'router',
        args: { page: VIEW, type: 'vyrrunningcheck' },
        answer: success,
        callback: { name: 'hiddentipCallBack', told: { result: 'show' } },
    },
    {
        command: 'vyrenvcheck',
        page: VIEW,
        args: { type: 'fonts', app: 'vyr', arg: '' },
        answer: success,
        callback: { name: 'returnvyrenvcheck', told: checkFinding },
    },
    { command: 'getvyrenvcheckedresult', page: VIEW, answer: isObject('fonts-vyr') },
    {
        command: 'runfirefoxplugin',
        page: VIEW,
        answer: success,
        file: [`${CALLS}/xdg-open`, 'vyrNpEnvCheck.html'],
    },
    {
        command: 'closechildwindow',
        page: VIEW,
        args: { type: 'vyrrunningcheck' },
        answer: nothing,
        callback: { name: 'hiddentipCallBack', page: 'index.html', told: { result: 'hide' } },
    },
    { command: 'showminimized', answer: nothing },
    { command: 'closemainwindow', ends: true },
];
