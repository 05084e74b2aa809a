import type { SearchHit } from '@/client';

export function hitPath({ name, directory }: SearchHit): string {
    return directory.endsWith('/') ? directory + name : `${directory}/${name}`;
}
