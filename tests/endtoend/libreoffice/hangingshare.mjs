import { spawn } from 'node:child_process';

/** Mounts a folder as sshfs does, for a server that never answers, until its input ends. */
const mounts = `
import ctypes, os, sys
device = os.open('/dev/fuse', os.O_RDWR)
libc = ctypes.CDLL(None, use_errno=True)
folder = os.fsencode(sys.argv[1])
options = f'fd={device},rootmode=40000,user_id=0,group_id=0,allow_other'.encode()
if libc.mount(b'user@127.0.0.2:/team', folder, b'fuse.sshfs', 6, options) != 0:
    sys.exit(os.strerror(ctypes.get_errno()))
print('mounted', flush=True)
sys.stdin.read()
libc.umount2(folder, 2)
`;

/**
 * A share whose server is away: everybody who touches it waits until they are killed. The kernel
 * knows it as a mount of sshfs; nobody stands behind it. Needs root. Returns what ends it.
 */
export async function hangingShare(folder) {
    const share = spawn('python3', ['-c', mounts, folder], { stdio: ['pipe', 'pipe', 'inherit'] });
    const ended = new Promise((resolve) => {
        share.once('exit', resolve);
    });
    const isMounted = await new Promise((resolve) => {
        share.stdout.once('data', () => resolve(true));
        share.once('exit', () => resolve(false));
    });
    if (!isMounted) throw new Error(`cannot mount a share on ${folder}`);
    return async () => {
        share.stdin.end();
        await ended;
    };
}
