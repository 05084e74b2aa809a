import { describe, expect, it } from 'vitest';
import { createClient, type Client } from '@/client';
import { commandNames } from '@/client/wire/host';
import { base64, scriptedClient } from './scriptedhost';

const feedback = {
    category: 'crash',
    description: 'It stops',
    sample: '/home/user/a.docx',
    attachments: ['/tmp/one.png', '/tmp/two.png'],
    systemInformation: true,
    suiteSettings: false,
    crashDumps: true,
};

/** Calls every operation once; a new one has to be added here to be counted. */
const everyOperation: ((client: Client) => Promise<unknown>)[] = [
    (client) => client.pressTitleBar(),
    (client) => client.releaseTitleBar(),
    (client) => client.closeMainWindow(),
    (client) => client.minimise(),
    (client) => client.openView('sysinfo.html', ''),
    (client) => client.stopPreload(),
    (client) => client.restartPreload(),
    (client) => client.takeScreenshot(),
    (client) => client.recordScreen(),
    (client) => client.openContentReplace(),
    (client) => client.openApiLog(),
    (client) => client.exportReport(),
    (client) => client.exportConfigurationFiles(),
    (client) => client.exportOneFile(),
    (client) => client.closeChildWindow('crash'),
    (client) => client.chooseLayoutDocument(),
    (client) => client.missingFonts('/home/user/文档.docx'),
    (client) => client.openLayoutDocument(),
    (client) => client.dumpState(),
    (client) => client.startKeepingDumps(),
    (client) => client.stopKeepingDumps(),
    (client) => client.clearDumps(),
    (client) => client.printDocument(true),
    (client) => client.busiestProcesses(),
    (client) => client.largestProcesses(),
    (client) => client.machineMemory(),
    (client) => client.updateLog(),
    (client) => client.updaterInstalled(),
    (client) => client.updateConfiguration(),
    (client) => client.testUpdate(),
    (client) => client.clearUpdateLog(),
    (client) => client.testDailyReport(),
    (client) => client.testUninstallReport(),
    (client) => client.testInstallReport(),
    (client) => client.changeUpdateConfiguration('channel', 'beta'),
    (client) => client.desktopShortcuts(),
    (client) => client.restoreSeparateShortcuts(),
    (client) => client.restoreIntegratedShortcut(),
    (client) => client.defaultApplications(),
    (client) => client.mimeTypes(),
    (client) => client.repairAssociations(),
    (client) => client.testServer({ url: 'http://h', functionName: 'f', headers: [], fields: [] }),
    (client) => client.keptFindings(),
    (client) => client.openPluginCheck(),
    (client) => client.startCheck('print', 'vyr'),
    (client) => client.copyText('text'),
    (client) => client.systemSnapshot(),
    (client) => client.configurationFiles(),
    (client) => client.addConfigurationFile(),
    (client) => client.checkInputMethod(),
    (client) => client.rememberFeedbackOrigin('layout'),
    (client) => client.feedbackOrigin(),
    (client) => client.chooseSample(),
    (client) => client.buildArchive(feedback, true),
    (client) => client.chooseAttachment(),
    (client) => client.openFoundFile('/tmp/a'),
    (client) => client.startSearch('report'),
];

async function sentBy(operation: (client: Client) => Promise<unknown>) {
    const { client, sent } = scriptedClient({});
    await operation(client);
    return sent;
}

describe('the client', () => {
    it('sends each of the 57 commands with exactly one operation', async () => {
        const names: string[] = [];
        for (const operation of everyOperation) {
            const sent = await sentBy(operation);
            expect(sent).toHaveLength(1);
            names.push(sent[0]!.command);
        }
        expect(commandNames).toHaveLength(57);
        expect([...names].sort()).toEqual([...commandNames].sort());
    });

    it('has no operation that the list above leaves out', () => {
        const { client } = scriptedClient({});
        const operations = Object.keys(client).filter(
            (name) =>
                ![
                    'doctor',
                    'draft',
                    'fontSubstitutes',
                    'hasHost',
                    'layOutDocument',
                    'listen',
                    'machine',
                    'previews',
                    'server',
                    'processes',
                    'openings',
                    'paths',
                    'dumps',
                    'reports',
                    'suite',
                    'task',
                    'why',
                    'window',
                ].includes(name),
        );
        expect(operations).toHaveLength(everyOperation.length);
    });

    it.each<[string, (client: Client) => Promise<unknown>, Record<string, unknown>]>([
        [
            'router',
            (client) => client.openView('crash.html', 'crash'),
            { page: 'crash.html', type: 'crash' },
        ],
        [
            'closechildwindow',
            (client) => client.closeChildWindow('searchfile'),
            { type: 'searchfile' },
        ],
        ['copytoclipboard', (client) => client.copyText('a\nb'), { verification: 'a\nb' }],
        [
            'comparefont',
            (client) => client.missingFonts('/home/文档.docx'),
            { filepath: base64('/home/文档.docx') },
        ],
        [
            'changeupdateconfig',
            (client) => client.changeUpdateConfiguration('a', ''),
            { keyvalue: 'a$' },
        ],
        [
            'vyrenvcheck',
            (client) => client.startCheck('print', 'tbl'),
            { type: 'print', app: 'tbl', arg: '' },
        ],
        [
            'archivepackage',
            (client) => client.buildArchive(feedback, true),
            {
                archiveType: 'crash',
                archiveDescribe: 'It stops',
                archiveSample: '/home/user/a.docx',
                archiveAttach1: '/tmp/one.png',
                archiveAttach2: '/tmp/two.png',
                archiveAttach3: '',
                archiveSysInfo: 'true',
                archiveVyrInfo: false,
                archiveDumpInfo: true,
            },
        ],
        [
            'openremoveurlcheck',
            (client) =>
                client.testServer({
                    url: 'http://h',
                    functionName: 'saveURL',
                    headers: [
                        { name: 'a', value: '1' },
                        { name: 'b', value: '2' },
                    ],
                    fields: [],
                }),
            { urlpath: 'http://h', funcname: 'saveURL', reqheader: 'a:1;b:2', reqtable: '' },
        ],
    ])('gives %s the arguments it reads', async (command, operation, args) => {
        expect(await sentBy(operation)).toEqual([{ command, args }]);
    });

    it('leaves the report out of the archive with an empty text, which is all that is asked', async () => {
        const [sent] = await sentBy((client) =>
            client.buildArchive({ ...feedback, systemInformation: false }, true),
        );
        expect(sent!.args!.archiveSysInfo).toBe('');
    });

    it('says that there is no host instead of failing', async () => {
        const client = createClient(() => undefined, {});
        expect(client.hasHost).toBe(false);
        expect(await client.exportReport()).toEqual({ kind: 'absent' });
        expect(await client.minimise()).toEqual({ kind: 'absent' });
    });
});
