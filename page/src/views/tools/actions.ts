import {
    Camera,
    Document,
    Edit,
    RefreshRight,
    SwitchButton,
    VideoCamera,
} from '@element-plus/icons-vue';
import type { Component } from 'vue';
import type { Client, Outcome } from '@/client';

/** A companion program, or something that one does; its texts are under tools.actions. */
export interface Action {
    name: string;
    icon: Component;
    run: (client: Client) => Promise<Outcome<void>>;
}

interface ActionGroup {
    name: string;
    actions: Action[];
}

/** Actions are only started; none reports whether it worked. */
export const actionGroups: ActionGroup[] = [
    {
        name: 'preload',
        actions: [
            { name: 'stop', icon: SwitchButton, run: (client) => client.stopPreload() },
            { name: 'restart', icon: RefreshRight, run: (client) => client.restartPreload() },
        ],
    },
    {
        name: 'screen',
        actions: [
            { name: 'screenshot', icon: Camera, run: (client) => client.takeScreenshot() },
            { name: 'record', icon: VideoCamera, run: (client) => client.recordScreen() },
        ],
    },
    {
        name: 'editing',
        actions: [
            { name: 'replace', icon: Edit, run: (client) => client.openContentReplace() },
            { name: 'apilog', icon: Document, run: (client) => client.openApiLog() },
        ],
    },
];
