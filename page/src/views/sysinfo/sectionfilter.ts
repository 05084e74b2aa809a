import { computed, type Ref } from 'vue';
import { matcher } from '@/tasks/filter';
import { sectionNames, shownValue, type Row, type SectionName, type Sections } from './sections';

/** What of the sections a filter leaves. Hidden values are not searched. */
export function useSectionFilter(
    sections: Readonly<Ref<Sections | null>>,
    filter: Ref<string>,
    revealed: Ref<ReadonlySet<string>>,
    current: Ref<SectionName>,
) {
    const isOn = computed(() => filter.value.trim() !== '');
    const filtered = computed(() => {
        const matches = matcher(filter.value);
        const result = {} as Record<SectionName, Row[]>;
        for (const name of sectionNames) {
            result[name] = (sections.value?.[name] ?? []).filter((row) =>
                matches(row.label ?? '', shownValue(row, revealed.value), row.style ?? ''),
            );
        }
        return result;
    });
    /** What the picture shows need not stand below it as well. */
    const shown = computed(() => ({
        ...filtered.value,
        overview: filtered.value.overview.filter(({ isPictured }) => !isPictured || isOn.value),
    }));
    /** Other sections that have what is filtered for. */
    const elsewhere = computed(() =>
        isOn.value
            ? sectionNames
                  .filter((name) => name !== current.value && filtered.value[name].length)
                  .map((name) => ({ name, count: filtered.value[name].length }))
            : [],
    );
    return { isOn, filtered, shown, elsewhere };
}
