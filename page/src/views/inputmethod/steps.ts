import type { AnswerCode } from './answers';
import type { Desktop, Framework, PackageTool } from './surroundings';

/** What to do, as a text under inputmethod.steps, with the commands that do it. */
interface Step {
    text: string;
    commands: string[];
}

export interface Situation {
    framework: Framework;
    desktop: Desktop;
    packageTool: PackageTool;
    wayland: boolean;
}

const packages: Record<Framework, Record<PackageTool, string>> = {
    fcitx5: {
        apt: 'fcitx5 fcitx5-chinese-addons fcitx5-frontend-qt5 fcitx5-frontend-gtk3',
        dnf: 'fcitx5 fcitx5-chinese-addons fcitx5-qt fcitx5-gtk',
        pacman: 'fcitx5 fcitx5-chinese-addons fcitx5-qt fcitx5-gtk',
    },
    ibus: { apt: 'ibus ibus-libpinyin', dnf: 'ibus ibus-libpinyin', pacman: 'ibus ibus-libpinyin' },
    fcitx: {
        apt: 'fcitx fcitx-frontend-qt5 fcitx-pinyin',
        dnf: 'fcitx fcitx-qt5',
        pacman: 'fcitx5 fcitx5-chinese-addons fcitx5-qt fcitx5-gtk',
    },
};

const installCommands: Record<PackageTool, string> = {
    apt: 'sudo apt install',
    dnf: 'sudo dnf install',
    pacman: 'sudo pacman -S',
};

/** The name under which the variables know the framework. */
function variableName(framework: Framework): string {
    return framework === 'ibus' ? 'ibus' : 'fcitx';
}

function install({ framework, packageTool }: Situation): Step {
    const names = packages[framework][packageTool];
    return { text: 'install', commands: [`${installCommands[packageTool]} ${names}`] };
}

function setVariables(situation: Situation): Step {
    const name = variableName(situation.framework);
    const lines = [`QT_IM_MODULE=${name}`, `GTK_IM_MODULE=${name}`, `XMODIFIERS=@im=${name}`];
    const file = '~/.config/environment.d/90-input-method.conf';
    return {
        text: 'variables',
        commands: [
            'mkdir -p ~/.config/environment.d',
            `printf '%s\\n' ${lines.join(' ')} > ${file}`,
            ...(situation.packageTool === 'apt' ? [`im-config -n ${situation.framework}`] : []),
        ],
    };
}

function start({ framework }: Situation): Step {
    const commands = { fcitx5: 'fcitx5 -d', fcitx: 'fcitx -d', ibus: 'ibus-daemon -drx' };
    return { text: 'start', commands: [commands[framework]] };
}

function startWithSession({ framework, desktop, wayland }: Situation): Step {
    if (desktop === 'kde' && wayland) return { text: 'startWithPlasma', commands: [] };
    if (framework === 'ibus') {
        return desktop === 'gnome'
            ? { text: 'startWithGnome', commands: [] }
            : { text: 'startByHand', commands: ['ibus-daemon -drx'] };
    }
    const file = framework === 'fcitx5' ? 'org.fcitx.Fcitx5.desktop' : 'fcitx.desktop';
    return {
        text: 'startWithSession',
        commands: [
            'mkdir -p ~/.config/autostart',
            `cp /usr/share/applications/${file} ~/.config/autostart/`,
        ],
    };
}

const logOut: Step = { text: 'logOut', commands: [] };
const again: Step = { text: 'again', commands: [] };

const showVariables: Step = { text: 'showVariables', commands: ["env | grep -E 'IM_MODULE|XMOD'"] };

const findSetting: Step = {
    text: 'findSetting',
    commands: [
        "grep -rsnE 'IM_MODULE|XMODIFIERS' ~/.config/environment.d ~/.profile ~/.xprofile " +
            '~/.pam_environment /etc/environment /etc/profile.d /etc/X11/xinit',
    ],
};

/** The steps that fix the problem of that code, in order. */
export function stepsFor(code: AnswerCode | null, situation: Situation): Step[] {
    switch (code) {
        case 'ERR_OK':
            return [{ text: 'tryHere', commands: [] }];
        case 'ERR_LOADPLUGIN_FAILED':
            return [showVariables, install(situation), setVariables(situation), logOut, again];
        case 'ERR_NOT_RUNNING':
            return [start(situation), startWithSession(situation), install(situation), again];
        case 'ERR_NOT_FIND_BUSCONFIG':
            return [
                { text: 'restartBus', commands: ['ibus-daemon -drx'] },
                {
                    text: 'busFiles',
                    commands: ['ls -l ~/.config/ibus/bus/', 'cat /etc/machine-id'],
                },
                { text: 'machineId', commands: ['sudo systemd-machine-id-setup'] },
                logOut,
                again,
            ];
        case 'ERR_INVALID_ENV_CONFIG':
            return [showVariables, findSetting, setVariables(situation), logOut, again];
        default:
            return [showVariables, { text: 'support', commands: [] }];
    }
}

/** Whether the choice of framework, desktop and package tool changes the steps. */
export function dependsOnSituation(code: AnswerCode | null): boolean {
    return (
        code === 'ERR_LOADPLUGIN_FAILED' ||
        code === 'ERR_NOT_RUNNING' ||
        code === 'ERR_INVALID_ENV_CONFIG'
    );
}
