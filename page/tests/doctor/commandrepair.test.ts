import { describe, expect, it } from 'vitest';
import { useCommandRepair } from '@/tasks/commandrepair';
import { doctorOperationNames } from '@/client/wire/host';
import { scriptedClient, type Answer } from '../scriptedhost';

const change = {
    kind: 'remove',
    path: '/home/user/vyr_1.dmp',
    diff: '',
    command: '',
    needs: 'user',
};
const preview = { result: { changes: [change], paths: [change.path], lasting: '' } };
const made = { result: 'repaired', journal: 4, reason: '', changes: [change] };
const answers: Record<string, Answer> = {
    cleardumpdir: { result: 'success' },
    'doctor.preview': preview,
    'doctor.watch': { result: { journal: 4, refusal: '' } },
    'doctor.watched': { result: made, lines: [{ type: 'note', text: 'interrupted' }] },
    'doctor.undo': { result: { result: 'undone', reason: '', kept: [] } },
};

function clearing(changes: Record<string, Answer> = {}, operations = [...doctorOperationNames]) {
    const { client, sent } = scriptedClient({ ...answers, ...changes }, operations);
    const repair = useCommandRepair(client, () => 'en');
    return {
        repair,
        run: () => repair.run('cleardumpdir', () => client.clearDumps()),
        commands: () => sent.map(({ command }) => command),
    };
}

describe('a repair by a command', () => {
    it('is watched, and undone', async () => {
        const { repair, run, commands } = clearing();
        await repair.prepare('cleardumpdir');
        expect(await run()).toEqual({ kind: 'done', value: undefined });
        expect(repair.made.value).toMatchObject({ journal: 4, changes: [{ kind: 'remove' }] });
        expect(repair.notes.value).toEqual(['interrupted']);
        await repair.undo();
        expect(repair.made.value).toBe(null);
        expect(commands()).toEqual([
            'doctor.preview',
            'doctor.watch',
            'cleardumpdir',
            'doctor.watched',
            'doctor.undo',
        ]);
    });

    it('runs alone in a shell that does not offer to watch', async () => {
        const { repair, run, commands } = clearing({}, ['doctor.look']);
        await repair.prepare('cleardumpdir');
        expect(await run()).toEqual({ kind: 'done', value: undefined });
        expect(commands()).toEqual(['cleardumpdir']);
    });

    it('runs alone when it was said to be lasting', async () => {
        const { repair, run, commands } = clearing({
            'doctor.preview': { result: { ...(preview.result as object), lasting: 'too large' } },
        });
        await repair.prepare('cleardumpdir');
        await run();
        expect(commands()).toEqual(['doctor.preview', 'cleardumpdir']);
        expect(repair.made.value).toBe(null);
    });

    it('does not run while another repair is under way', async () => {
        const { run, commands } = clearing({
            'doctor.watch': { result: { journal: 0, refusal: 'another one' } },
        });
        expect(await run()).toEqual({ kind: 'blocked', reason: 'another one' });
        expect(commands()).toEqual(['doctor.watch']);
    });

    it('ends its watch also when the command fails', async () => {
        const { repair, run } = clearing({ cleardumpdir: { result: 'error' } });
        expect(await run()).toEqual({ kind: 'failed' });
        expect(repair.made.value).toMatchObject({ journal: 4 });
    });

    it('can be undone again after a conflict', async () => {
        const { repair, run } = clearing({
            'doctor.undo': { result: { result: 'conflict', reason: 'changed', kept: ['/a'] } },
        });
        await run();
        await repair.undo();
        expect(repair.undone.value).toMatchObject({ result: 'conflict', kept: ['/a'] });
        expect(repair.made.value).not.toBe(null);
    });
});
