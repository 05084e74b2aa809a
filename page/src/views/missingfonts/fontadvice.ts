/**
 * How close what can be installed comes to a font:
 * - same: the font itself;
 * - metric: another face with the same widths, so that lines and pages break as they should;
 * - similar: a face that looks alike, though lines may break elsewhere.
 */
type Closeness = 'same' | 'metric' | 'similar';

interface Advice {
    package: string;
    /** The face that the package has for it. */
    face: string;
    closeness: Closeness;
}

/** A font's names, and the package of Debian and its relatives that helps. */
const table: [names: string, packageName: string, face: string, closeness: Closeness][] = [
    ['calibri', 'fonts-crosextra-carlito', 'Carlito', 'metric'],
    ['cambria', 'fonts-crosextra-caladea', 'Caladea', 'metric'],
    ['arial|helvetica', 'fonts-liberation', 'Liberation Sans', 'metric'],
    ['arial narrow', 'fonts-liberation', 'Liberation Sans Narrow', 'metric'],
    ['times new roman|times', 'fonts-liberation', 'Liberation Serif', 'metric'],
    ['courier new|courier', 'fonts-liberation', 'Liberation Mono', 'metric'],
    ['georgia', 'fonts-dejavu-core', 'DejaVu Serif', 'similar'],
    ['comic sans ms', 'fonts-comic-neue', 'Comic Neue', 'similar'],
    ['verdana|tahoma', 'fonts-dejavu-core', 'DejaVu Sans', 'similar'],
    ['segoe ui', 'fonts-open-sans', 'Open Sans', 'similar'],
    ['symbol|segoe ui symbol', 'fonts-symbola', 'Symbola', 'similar'],
    ['wingdings|wingdings 2|wingdings 3|webdings', 'fonts-opensymbol', 'OpenSymbol', 'similar'],
    ['segoe ui emoji', 'fonts-noto-color-emoji', 'Noto Color Emoji', 'similar'],
    ['simsun|nsimsun|宋体|新宋体|simsun-extb', 'fonts-noto-cjk', 'Noto Serif CJK SC', 'similar'],
    ['simhei|黑体|dengxian|等线', 'fonts-noto-cjk', 'Noto Sans CJK SC', 'similar'],
    [
        'microsoft yahei|microsoft yahei ui|微软雅黑',
        'fonts-wqy-microhei',
        'WenQuanYi Micro Hei',
        'similar',
    ],
    [
        'kaiti|楷体|kaiti_gb2312|楷体_gb2312|stkaiti|华文楷体',
        'fonts-arphic-ukai',
        'AR PL UKai CN',
        'similar',
    ],
    ['mingliu|pmingliu|細明體|新細明體', 'fonts-arphic-uming', 'AR PL UMing TW', 'similar'],
    ['microsoft jhenghei|微軟正黑體', 'fonts-noto-cjk', 'Noto Sans CJK TC', 'similar'],
    ['ms gothic|ms pgothic|ｍｓ ゴシック', 'fonts-ipafont-gothic', 'IPAGothic', 'similar'],
    ['ms mincho|ms pmincho|ｍｓ 明朝', 'fonts-ipafont-mincho', 'IPAMincho', 'similar'],
    ['meiryo|yu gothic', 'fonts-noto-cjk', 'Noto Sans CJK JP', 'similar'],
    ['malgun gothic|맑은 고딕|gulim|굴림|dotum|돋움', 'fonts-nanum', 'NanumGothic', 'similar'],
    ['batang|바탕', 'fonts-nanum', 'NanumMyeongjo', 'similar'],
    ['roboto', 'fonts-roboto', 'Roboto', 'same'],
    ['lato', 'fonts-lato', 'Lato', 'same'],
    ['open sans', 'fonts-open-sans', 'Open Sans', 'same'],
    ['inter', 'fonts-inter', 'Inter', 'same'],
    ['carlito', 'fonts-crosextra-carlito', 'Carlito', 'same'],
    ['caladea', 'fonts-crosextra-caladea', 'Caladea', 'same'],
];

/** Families of which a package contains every face under its own name. */
const families: [prefix: RegExp, packageName: string][] = [
    [/^liberation (sans|serif|mono)/, 'fonts-liberation'],
    [/^dejavu .*(condensed|light)/, 'fonts-dejavu-extra'],
    [/^dejavu (sans|serif)/, 'fonts-dejavu-core'],
    [/^noto (sans|serif)( mono)? cjk/, 'fonts-noto-cjk'],
    [/^noto (sans )?mono/, 'fonts-noto-mono'],
    [/^noto (sans|serif)/, 'fonts-noto-core'],
    [/^wenquanyi micro hei/, 'fonts-wqy-microhei'],
    [/^wenquanyi zen hei/, 'fonts-wqy-zenhei'],
    [/^nanum/, 'fonts-nanum'],
];

const byName = new Map(
    table.flatMap(([names, packageName, face, closeness]) =>
        names
            .split('|')
            .map((name): [string, Advice] => [name, { package: packageName, face, closeness }]),
    ),
);

/** A vertical face is named with "@" before; it comes with the font itself. */
const plainName = (name: string): string =>
    name.replace(/^@/, '').replace(/\s+/g, ' ').trim().toLowerCase();

/** What to install for a missing font; null when no package is known for it. */
export function fontAdvice(name: string): Advice | null {
    const plain = plainName(name);
    const known = byName.get(plain);
    if (known) return known;
    const family = families.find(([prefix]) => prefix.test(plain));
    return family ? { package: family[1], face: name.replace(/^@/, ''), closeness: 'same' } : null;
}

/** One command for all that can be installed and is not there; empty when nothing can. */
export function installCommand(names: string[], installed: string[]): string {
    const packages = new Set(names.flatMap((name) => fontAdvice(name)?.package ?? []));
    installed.forEach((there) => packages.delete(there));
    return packages.size ? `sudo apt-get install ${[...packages].sort().join(' ')}` : '';
}
