import { ElButton } from 'element-plus/es/components/button/index.mjs';
import { h, type FunctionalComponent } from 'vue';

/** The library's button, which keeps the focus while it cannot be used. */
const button: FunctionalComponent<Record<string, unknown>> = ({ disabled, ...rest }, { slots }) =>
    h(
        ElButton,
        {
            ...rest,
            class: [rest.class, { 'is-disabled': disabled }],
            'aria-disabled': disabled ? 'true' : undefined,
        },
        slots,
    );
button.inheritAttrs = false;

export const keptButton = button as unknown as typeof ElButton;
