import { Box, DataAnalysis, Document, Folder, Grid, Headset } from '@element-plus/icons-vue';
import { Picture, Reading, Tickets, VideoCamera } from '@element-plus/icons-vue';
import type { Component } from 'vue';
import { applicationOf } from '@/parts/documenttypes';

/** How a kind of file is drawn; `name` is the name of its text and of its colour. */
interface FileKind {
    name: string;
    icon: Component;
}

const byName: Record<string, Component> = {
    folder: Folder,
    writer: Document,
    spreadsheet: Grid,
    presentation: DataAnalysis,
    pdf: Reading,
    picture: Picture,
    sound: Headset,
    video: VideoCamera,
    archive: Box,
    other: Tickets,
};

const suffixes: [kind: string, suffixes: RegExp][] = [
    ['writer', /\.(odt|ott|rtf|wps|txt|md)$/i],
    ['spreadsheet', /\.(ods|ots|csv|et)$/i],
    ['presentation', /\.(odp|otp|dps)$/i],
    ['pdf', /\.(pdf|ofd|epub)$/i],
    ['picture', /\.(png|jpe?g|gif|svg|webp|bmp|tiff?|heic)$/i],
    ['sound', /\.(mp3|ogg|oga|opus|flac|wav|m4a)$/i],
    ['video', /\.(mp4|mkv|webm|avi|mov|ogv)$/i],
    ['archive', /\.(zip|tar|gz|xz|bz2|zst|7z|rar|deb|rpm)$/i],
];

/** What a file is by its name, as far as the disk has not told. */
export function fileKind(name: string, isFolder: boolean): FileKind {
    const kind = isFolder
        ? 'folder'
        : (applicationOf(name) ?? suffixes.find(([, one]) => one.test(name))?.[0] ?? 'other');
    return { name: kind, icon: byName[kind]! };
}
