import type { Client } from '@/client';
import { groups, type Tool } from '@/frame/tools';

/** A view that the home page opens; `name` is its folder and its texts' key. */
export interface Offer extends Tool {
    name: string;
    page: string;
}

export interface OfferGroup {
    name: (typeof groups)[number];
    offers: Offer[];
}

/** The views that the shell can serve, by group; a group without any is left out. */
export function offerGroups(modules: Record<string, { tool: Tool }>, client: Client): OfferGroup[] {
    const offers = Object.entries(modules).map(([path, { tool }]) => {
        const name = path.split('/').slice(-2)[0] ?? '';
        return { ...tool, name, page: `${name}.html` };
    });
    return groups
        .map((group) => ({
            name: group,
            offers: offers
                .filter((offer) => offer.group === group && (offer.isOffered?.(client) ?? true))
                .sort((first, second) => first.order - second.order),
        }))
        .filter((group) => group.offers.length > 0);
}
