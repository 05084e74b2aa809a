import { describe, expect, it } from 'vitest';
import { base64Text } from '@/client/wire/decode';
import { HitList } from '@/views/search/hitlist';
import { fileKind } from '@/views/search/filekinds';
import { hitPath } from '@/views/search/hitpath';
import { matchPieces } from '@/views/search/matchpieces';
import { mostRows, rowWindow, scrollFor } from '@/views/search/rowwindow';
import { sortInto } from '@/views/search/slicedsort';
import { SortKeys } from '@/views/search/sortkeys';
import { base64 } from './scriptedhost';

function listOf(...names: string[]): HitList {
    const list = new HitList('en');
    for (const name of names) list.add({ name, directory: '/home' });
    return list;
}

function shown(list: HitList): string[] {
    return Array.from(
        { length: list.shownCount },
        (_, position) => list.hit(list.numberAt(position)!)!.name,
    );
}

/** A clock that moves on by a millisecond at each look. */
function clock(): () => number {
    let time = 0;
    return () => time++;
}

describe('the sliced sort', () => {
    it('sorts as a plain sort does, whatever the number', () => {
        for (const count of [0, 1, 255, 256, 257, 5000]) {
            const values = Array.from({ length: count }, (_, index) => (index * 7919) % 1009);
            const sorting = sortInto([-5, 3, 2000], values, (first, second) => first - second);
            let steps = 0;
            let result = sorting.next();
            for (; !result.done; result = sorting.next()) steps += 1;
            expect(result.value).toEqual(
                [-5, 3, 2000, ...values].sort((first, second) => first - second),
            );
            expect(steps).toBeGreaterThanOrEqual(count / 256);
        }
    });
});

describe('the keys of a sort', () => {
    /** Names of all that decides an order: case, numbers, signs, ideographs, accents. */
    function names(count: number): string[] {
        const pieces = [
            ...'aAbBzZ_-. ()~0',
            ...'007 10 9 00010 1 '.split(' '),
            ...'报告文件重长银行一丁é',
        ];
        let seed = 7;
        const random = (below: number): number => {
            seed = (seed * 48271) % 2147483647;
            return seed % below;
        };
        const name = (): string =>
            Array.from({ length: 1 + random(6) }, () => pieces[random(pieces.length)]).join('');
        return Array.from({ length: count }, name);
    }

    function learn(keys: SortKeys, texts: string[]): boolean {
        const learning = keys.learn(texts);
        let step = learning.next();
        while (!step.done) step = learning.next();
        return step.value;
    }

    it.each(['en', 'zh-CN'])('order names as the collator of %s does', (language) => {
        const { compare } = new Intl.Collator(language, { numeric: true });
        const keys = new SortKeys(language);
        const all = names(3000);
        expect([learn(keys, all.slice(0, 10)), learn(keys, all)]).toEqual([true, true]);
        let decided = 0;
        for (let index = 1; index < all.length; index += 1) {
            const [one, other] = [all[index - 1]!, all[index]!];
            const [first, second] = [keys.key(one), keys.key(other)];
            if (!first || !second || first === second) continue;
            decided += 1;
            expect([one, other, first < second]).toEqual([one, other, compare(one, other) < 0]);
        }
        expect(decided).toBeGreaterThan(1500);
    });

    it('are not given to what the collator looks at as a whole, nor without a look', () => {
        const keys = new SortKeys('en');
        expect(learn(keys, ['abcA'])).toBe(true);
        expect(learn(keys, ['cab1'])).toBe(false);
        expect(keys.key('abc 1')).toBe('');
        expect(keys.key('ába')).toBe('');
        expect(keys.key('1'.repeat(255))).toBe('');
        expect(keys.key('a01')).toBe(keys.key('A1'));
        expect(keys.key('a01')).not.toBe('');
    });
});

describe('the list of hits', () => {
    it('shows nothing before it has worked, and all of it after', () => {
        const list = listOf('b', 'a');
        expect([list.count, list.shownCount, list.isBusy]).toEqual([2, 0, true]);
        expect(list.work(5, clock())).toBe(true);
        expect(shown(list)).toEqual(['b', 'a']);
        expect([list.isBusy, list.work(5, clock())]).toEqual([false, false]);
    });

    it('works no longer than it may', () => {
        const list = listOf(...Array.from({ length: 1000 }, (_, index) => `file ${index}`));
        list.work(2, clock());
        expect(list.isBusy).toBe(true);
        expect(list.shownCount).toBeLessThan(1000);
    });

    it('sorts by name as a person would, and keeps what arrives later in order', () => {
        const list = listOf('file 10', 'File 9', 'äther');
        list.orderBy('name');
        list.work(50, clock());
        expect(shown(list)).toEqual(['äther', 'File 9', 'file 10']);
        list.add({ name: 'aa', directory: '/' });
        list.add({ name: 'file 9b', directory: '/' });
        list.work(50, clock());
        expect(shown(list)).toEqual(['aa', 'äther', 'File 9', 'file 9b', 'file 10']);
    });

    it('waits with sorting in a few more while more are on their way, but not for long', () => {
        const list = listOf(...Array.from({ length: 80 }, (_, index) => `f${index}`));
        list.orderBy('name');
        list.expectsMore = true;
        list.work(50, () => 0);
        expect(list.shownCount).toBe(80);
        list.add({ name: 'a', directory: '/' });
        list.work(50, () => 100);
        expect([list.shownCount, list.isBusy]).toEqual([80, true]);
        list.work(50, () => 500);
        expect(shown(list)[0]).toBe('a');
        list.add({ name: 'b', directory: '/' });
        list.expectsMore = false;
        list.work(50, () => 501);
        expect(shown(list)[1]).toBe('b');
    });

    it('keeps showing what it showed until a sort is done', () => {
        const list = listOf(...Array.from({ length: 2000 }, (_, index) => `f${2000 - index}`));
        list.work(1000, clock());
        list.orderBy('name');
        list.work(1, clock());
        expect(list.isBusy).toBe(true);
        expect(shown(list)[0]).toBe('f2000');
        list.work(1000, clock());
        expect(shown(list)[0]).toBe('f1');
        list.orderBy('found');
        expect(shown(list)[0]).toBe('f2000');
    });

    it('sorts by folder and keeps equal ones as they were found', () => {
        const list = new HitList('en');
        list.add({ name: 'z', directory: '/b' });
        list.add({ name: 'y', directory: '/a' });
        list.add({ name: 'x', directory: '/b' });
        list.orderBy('folder');
        list.work(50, clock());
        expect(shown(list)).toEqual(['y', 'z', 'x']);
    });

    it('sorts by figures, both ways, and puts what has none last', () => {
        const sizes = [5, undefined, 9, 7];
        const list = new HitList('en', (number) => sizes[number]);
        for (const name of ['a', 'b', 'c', 'd']) list.add({ name, directory: '/' });
        list.orderBy('size', true);
        list.work(50, clock());
        expect(shown(list)).toEqual(['c', 'd', 'a', 'b']);
        list.orderBy('size', false);
        list.work(50, clock());
        expect(shown(list)).toEqual(['a', 'd', 'c', 'b']);
        sizes[1] = 1;
        list.sortAgain();
        list.work(50, clock());
        expect(shown(list)).toEqual(['b', 'a', 'd', 'c']);
    });

    it('filters by every word, in name or folder', () => {
        const list = listOf('report one', 'REPORT two', 'letter');
        list.filterBy('report home');
        list.work(50, clock());
        expect(shown(list)).toEqual(['report one', 'REPORT two']);
        list.filterBy('');
        list.work(50, clock());
        expect(list.shownCount).toBe(3);
    });

    it('knows the place of a hit among those shown', () => {
        const list = listOf('b', 'a');
        list.orderBy('name');
        list.work(50, clock());
        expect([list.positionOf(0), list.positionOf(1), list.positionOf(7)]).toEqual([1, 0, -1]);
    });

    it('is empty again after it was cleared, in the order that was chosen', () => {
        const list = listOf('b', 'a');
        list.orderBy('name');
        list.work(50, clock());
        list.clear();
        expect([list.count, list.shownCount, list.isBusy]).toEqual([0, 0, false]);
        list.add({ name: 'd', directory: '/' });
        list.add({ name: 'c', directory: '/' });
        list.work(50, clock());
        expect(shown(list)).toEqual(['c', 'd']);
    });
});

describe('the rows in sight', () => {
    it('are those scrolled to and a few around', () => {
        expect(rowWindow(100_000, 40, 4000, 400)).toEqual({
            start: 90,
            end: 120,
            height: 4_000_000,
        });
        expect(rowWindow(5, 40, 0, 400)).toEqual({ start: 0, end: 5, height: 200 });
        expect(rowWindow(0, 40, 0, 400)).toEqual({ start: 0, end: 0, height: 0 });
    });

    it('are none when fewer are left than were scrolled past', () => {
        const { start, end } = rowWindow(3, 40, 90_000, 400);
        expect(end - start).toBe(0);
    });

    it('end where no browser can scroll any more', () => {
        expect(rowWindow(5_000_000, 40, 0, 400).height).toBe(mostRows(40) * 40);
        expect(mostRows(40)).toBeGreaterThan(100_000);
    });

    it('are scrolled to no further than needed', () => {
        expect(scrollFor(5, 40, 400, 400)).toBe(200);
        expect(scrollFor(12, 40, 400, 400)).toBe(400);
        expect(scrollFor(25, 40, 400, 400)).toBe(640);
    });
});

describe('a hit', () => {
    it('has its path with one slash between folder and name', () => {
        expect(hitPath({ name: 'a', directory: '/' })).toBe('/a');
        expect(hitPath({ name: 'a b', directory: '/home/u' })).toBe('/home/u/a b');
    });

    it.each(['plain.txt', 'ünï 文档.docx', '\uFEFFmark', '', '😀\u202E'])(
        'keeps its name %j over the wire',
        (name) => {
            expect(base64Text(base64(name))).toBe(name);
        },
    );
});

describe('what is marked in a name', () => {
    const marked = (name: string, ...wanted: string[]): string =>
        matchPieces(name, wanted)
            .map(({ text, isMatch }) => (isMatch ? `[${text}]` : text))
            .join('');

    it('is each place of each text, whatever its case', () => {
        expect(marked('Report of reports', 'report')).toBe('[Report] of [report]s');
        expect(marked('annual report 2026', 'rep', 'report', '2026')).toBe(
            'annual [report] [2026]',
        );
        expect(marked('报告 2026', '报告')).toBe('[报告] 2026');
    });

    it('is text, not a pattern', () => {
        expect(marked('a.b (2)', '.', '(2)')).toBe('a[.]b [(2)]');
        expect(marked('plain', '')).toBe('plain');
    });
});

describe('the kind of a file', () => {
    it.each([
        ['a.docx', 'writer'],
        ['a.ODS', 'spreadsheet'],
        ['a.pptx', 'presentation'],
        ['photo.JPG', 'picture'],
        ['a.tar.gz', 'archive'],
        ['README', 'other'],
    ])('of %s is %s', (name, kind) => {
        expect(fileKind(name, false).name).toBe(kind);
        expect(fileKind(name, true).name).toBe('folder');
    });
});
