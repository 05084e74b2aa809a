import type { NamedValues } from '@/client';

export interface RequestRow {
    /** For the list on the page only. */
    id: number;
    name: string;
    value: string;
}

/** Why a row cannot be sent, by the name of its text; null when it can. */
type RowObjection = 'separator' | 'noName';

/** @param joined whether rows travel joined with ":" and ";", so that neither side can hold one */
export function rowObjection({ name, value }: RequestRow, joined = true): RowObjection | null {
    if (joined && (/[:;]/.test(name) || /[:;]/.test(value))) return 'separator';
    return name.trim() === '' && value !== '' ? 'noName' : null;
}

const isEmpty = ({ name, value }: RequestRow): boolean => name.trim() === '' && value === '';

/** What is sent of the rows: those that the user left empty are none. */
export function namedValues(rows: RequestRow[]): NamedValues {
    return rows
        .filter((row) => !isEmpty(row))
        .map(({ name, value }) => ({ name: name.trim(), value }));
}
