import type { Component } from 'vue';
import type { Client, ViewType } from '@/client';

/** The groups of the home page, in order. */
export const groups = ['machine', 'suite', 'documents', 'help'] as const;

/** How the home page offers a view; each offered view's folder has one in its tool.ts. */
export interface Tool {
    group: (typeof groups)[number];
    /** Position within the group. */
    order: number;
    icon: Component;
    type: ViewType;
    /** Whether a shell can do what the view is for; every shell can where it is left out. */
    isOffered?: (client: Client) => boolean;
}
