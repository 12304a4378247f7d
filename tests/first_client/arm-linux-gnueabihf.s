	.arch armv7-a
	.fpu vfpv3-d16
	.eabi_attribute 28, 1
	.eabi_attribute 20, 1
	.eabi_attribute 21, 1
	.eabi_attribute 23, 3
	.eabi_attribute 24, 1
	.eabi_attribute 25, 1
	.eabi_attribute 26, 2
	.eabi_attribute 30, 2
	.eabi_attribute 34, 1
	.eabi_attribute 18, 4
	.file	"client.cpp"
	.text
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE, %function
_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE:
	.fnstart
.LFB1746:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	@ link register save eliminated.
	ldr	r3, [r0, #4]
	ldr	r0, [r1, #4]
	subs	r0, r0, r3
	clz	r0, r0
	lsrs	r0, r0, #5
	bx	lr
	.fnend
	.size	_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE, .-_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv, %function
_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv:
	.fnstart
.LFB1748:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	@ link register save eliminated.
	movs	r0, #1
	bx	lr
	.fnend
	.size	_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv, .-_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv
	.thumb_set _ZN12_GLOBAL__N_16Screen18isOutputStreamOpenEv,_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv, %function
_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv:
	.fnstart
.LFB1749:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	@ link register save eliminated.
	bx	lr
	.fnend
	.size	_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv, .-_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv
	.thumb_set _ZN12_GLOBAL__N_16Screen17FlushOutputStreamEv,_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv, %function
_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv:
	.fnstart
.LFB1752:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	@ link register save eliminated.
	movs	r0, #0
	bx	lr
	.fnend
	.size	_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv, .-_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv
	.thumb_set _ZN12_GLOBAL__N_16Screen19isOutputStreamAtEndEv,_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv
	.section	.rodata.str1.4,"aMS",%progbits,1
	.align	2
.LC0:
	.ascii	"[%.*s]\000"
	.text
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj, %function
_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj:
	.fnstart
.LFB1754:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r0, .L8
	push	{r3, lr}
	.save {r3, lr}
	mov	r3, r2
.LPIC0:
	add	r0, pc
	mov	r2, r1
	mov	r1, r3
	bl	printf(PLT)
	movs	r0, #1
	pop	{r3, pc}
.L9:
	.align	2
.L8:
	.word	.LC0-(.LPIC0+4)
	.fnend
	.size	_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj, .-_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_19BracketedD1Ev, %function
_ZN12_GLOBAL__N_19BracketedD1Ev:
	.fnstart
.LFB2343:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	push	{r3, r4, r5, lr}
	.save {r3, r4, r5, lr}
	mov	r5, r0
	ldr	r3, .L12
	ldr	r1, .L12+4
	mov	r4, r0
.LPIC1:
	add	r3, pc
	add	r2, r3, #12
.LPIC4:
	add	r1, pc
	str	r2, [r0]
	add	r2, r3, #76
	adds	r3, r3, #120
	str	r2, [r0, #4]
	str	r3, [r5, #32]!
	adds	r1, r1, #4
	bl	_ZN7utility16VirtualPutStreamD2Ev(PLT)
	mov	r0, r5
	bl	_ZN7utility6BufferD2Ev(PLT)
	mov	r0, r4
	pop	{r3, r4, r5, pc}
.L13:
	.align	2
.L12:
	.word	.LANCHOR0-(.LPIC1+4)
	.word	.LANCHOR1-(.LPIC4+4)
	.fnend
	.size	_ZN12_GLOBAL__N_19BracketedD1Ev, .-_ZN12_GLOBAL__N_19BracketedD1Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv, %function
_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv:
	.fnstart
.LFB1758:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
	movs	r0, #60
	bl	putchar(PLT)
	mov	r0, r4
	bl	_ZN7utility16VirtualPutStream17FlushOutputStreamEv(PLT)
	movs	r0, #62
	pop	{r4, lr}
	b	putchar(PLT)
	.fnend
	.size	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv, .-_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_16ScreenD2Ev, %function
_ZN12_GLOBAL__N_16ScreenD2Ev:
	.fnstart
.LFB2346:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r3, .L18
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
.LPIC5:
	add	r3, pc
	adds	r3, r3, #152
	str	r3, [r0]
	bl	_ZN9framework12OutputStreamD2Ev(PLT)
	mov	r0, r4
	pop	{r4, pc}
.L19:
	.align	2
.L18:
	.word	.LANCHOR0-(.LPIC5+4)
	.fnend
	.size	_ZN12_GLOBAL__N_16ScreenD2Ev, .-_ZN12_GLOBAL__N_16ScreenD2Ev
	.thumb_set _ZN12_GLOBAL__N_16ScreenD1Ev,_ZN12_GLOBAL__N_16ScreenD2Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_16ScreenD0Ev, %function
_ZN12_GLOBAL__N_16ScreenD0Ev:
	.fnstart
.LFB2348:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r3, .L22
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
.LPIC6:
	add	r3, pc
	adds	r3, r3, #152
	str	r3, [r0]
	bl	_ZN9framework12OutputStreamD2Ev(PLT)
	mov	r0, r4
	movs	r1, #4
	bl	_ZdlPvj(PLT)
	mov	r0, r4
	pop	{r4, pc}
.L23:
	.align	2
.L22:
	.word	.LANCHOR0-(.LPIC6+4)
	.fnend
	.size	_ZN12_GLOBAL__N_16ScreenD0Ev, .-_ZN12_GLOBAL__N_16ScreenD0Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_14PortD2Ev, %function
_ZN12_GLOBAL__N_14PortD2Ev:
	.fnstart
.LFB2350:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r3, .L26
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
.LPIC7:
	add	r3, pc
	adds	r3, r3, #32
	str	r3, [r0]
	bl	_ZN7utility15ListContainableD2Ev(PLT)
	mov	r0, r4
	pop	{r4, pc}
.L27:
	.align	2
.L26:
	.word	.LANCHOR1-(.LPIC7+4)
	.fnend
	.size	_ZN12_GLOBAL__N_14PortD2Ev, .-_ZN12_GLOBAL__N_14PortD2Ev
	.thumb_set _ZN12_GLOBAL__N_14PortD1Ev,_ZN12_GLOBAL__N_14PortD2Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_14PortD0Ev, %function
_ZN12_GLOBAL__N_14PortD0Ev:
	.fnstart
.LFB2352:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r3, .L30
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
.LPIC8:
	add	r3, pc
	adds	r3, r3, #32
	str	r3, [r0]
	bl	_ZN7utility15ListContainableD2Ev(PLT)
	mov	r0, r4
	movs	r1, #8
	bl	_ZdlPvj(PLT)
	mov	r0, r4
	pop	{r4, pc}
.L31:
	.align	2
.L30:
	.word	.LANCHOR1-(.LPIC8+4)
	.fnend
	.size	_ZN12_GLOBAL__N_14PortD0Ev, .-_ZN12_GLOBAL__N_14PortD0Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN12_GLOBAL__N_19BracketedD0Ev, %function
_ZN12_GLOBAL__N_19BracketedD0Ev:
	.fnstart
.LFB2344:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	push	{r3, r4, r5, lr}
	.save {r3, r4, r5, lr}
	mov	r5, r0
	ldr	r3, .L34
	ldr	r1, .L34+4
	mov	r4, r0
.LPIC9:
	add	r3, pc
	add	r2, r3, #12
.LPIC12:
	add	r1, pc
	str	r2, [r0]
	add	r2, r3, #76
	adds	r3, r3, #120
	str	r2, [r0, #4]
	str	r3, [r5, #32]!
	adds	r1, r1, #4
	bl	_ZN7utility16VirtualPutStreamD2Ev(PLT)
	mov	r0, r5
	bl	_ZN7utility6BufferD2Ev(PLT)
	mov	r0, r4
	bl	_ZN7utility6BufferdlEPv(PLT)
	mov	r0, r4
	pop	{r3, r4, r5, pc}
.L35:
	.align	2
.L34:
	.word	.LANCHOR0-(.LPIC9+4)
	.word	.LANCHOR1-(.LPIC12+4)
	.fnend
	.size	_ZN12_GLOBAL__N_19BracketedD0Ev, .-_ZN12_GLOBAL__N_19BracketedD0Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZThn4_N12_GLOBAL__N_19BracketedD0Ev, %function
_ZThn4_N12_GLOBAL__N_19BracketedD0Ev:
	.fnstart
.LFB2355:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	push	{r3, r4, r5, lr}
	.save {r3, r4, r5, lr}
	mov	r5, r0
	ldr	r3, .L38
	ldr	r1, .L38+4
	subs	r4, r0, #4
.LPIC13:
	add	r3, pc
	add	r2, r3, #12
.LPIC16:
	add	r1, pc
	str	r2, [r0, #-4]
	add	r2, r3, #76
	adds	r3, r3, #120
	str	r2, [r0]
	str	r3, [r5, #28]!
	adds	r1, r1, #4
	mov	r0, r4
	bl	_ZN7utility16VirtualPutStreamD2Ev(PLT)
	mov	r0, r5
	bl	_ZN7utility6BufferD2Ev(PLT)
	mov	r0, r4
	bl	_ZN7utility6BufferdlEPv(PLT)
	mov	r0, r4
	pop	{r3, r4, r5, pc}
.L39:
	.align	2
.L38:
	.word	.LANCHOR0-(.LPIC13+4)
	.word	.LANCHOR1-(.LPIC16+4)
	.fnend
	.size	_ZThn4_N12_GLOBAL__N_19BracketedD0Ev, .-_ZThn4_N12_GLOBAL__N_19BracketedD0Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZTv0_n12_N12_GLOBAL__N_19BracketedD1Ev, %function
_ZTv0_n12_N12_GLOBAL__N_19BracketedD1Ev:
	.fnstart
.LFB2356:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r2, [r0]
	push	{r3, r4, r5, lr}
	.save {r3, r4, r5, lr}
	ldr	r3, .L42
	ldr	r2, [r2, #-12]
.LPIC17:
	add	r3, pc
	ldr	r1, .L42+4
	add	r4, r3, #12
	add	r5, r3, #76
	str	r4, [r0, r2]
	adds	r4, r0, r2
.LPIC20:
	add	r1, pc
	adds	r3, r3, #120
	adds	r1, r1, #4
	mov	r0, r4
	str	r3, [r4, #32]
	str	r5, [r4, #4]
	bl	_ZN7utility16VirtualPutStreamD2Ev(PLT)
	add	r0, r4, #32
	bl	_ZN7utility6BufferD2Ev(PLT)
	mov	r0, r4
	pop	{r3, r4, r5, pc}
.L43:
	.align	2
.L42:
	.word	.LANCHOR0-(.LPIC17+4)
	.word	.LANCHOR1-(.LPIC20+4)
	.fnend
	.size	_ZTv0_n12_N12_GLOBAL__N_19BracketedD1Ev, .-_ZTv0_n12_N12_GLOBAL__N_19BracketedD1Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZThn4_N12_GLOBAL__N_19BracketedD1Ev, %function
_ZThn4_N12_GLOBAL__N_19BracketedD1Ev:
	.fnstart
.LFB2357:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	push	{r3, r4, r5, lr}
	.save {r3, r4, r5, lr}
	mov	r4, r0
	ldr	r3, .L46
	ldr	r1, .L46+4
	subs	r5, r0, #4
.LPIC21:
	add	r3, pc
.LPIC24:
	add	r1, pc
	add	r2, r3, #12
	adds	r1, r1, #4
	str	r2, [r0, #-4]
	add	r2, r3, #76
	adds	r3, r3, #120
	str	r2, [r0]
	mov	r0, r5
	str	r3, [r4, #28]
	bl	_ZN7utility16VirtualPutStreamD2Ev(PLT)
	add	r0, r4, #28
	bl	_ZN7utility6BufferD2Ev(PLT)
	mov	r0, r5
	pop	{r3, r4, r5, pc}
.L47:
	.align	2
.L46:
	.word	.LANCHOR0-(.LPIC21+4)
	.word	.LANCHOR1-(.LPIC24+4)
	.fnend
	.size	_ZThn4_N12_GLOBAL__N_19BracketedD1Ev, .-_ZThn4_N12_GLOBAL__N_19BracketedD1Ev
	.align	1
	.p2align 2,,3
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZTv0_n12_N12_GLOBAL__N_19BracketedD0Ev, %function
_ZTv0_n12_N12_GLOBAL__N_19BracketedD0Ev:
	.fnstart
.LFB2354:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r2, [r0]
	push	{r3, r4, r5, lr}
	.save {r3, r4, r5, lr}
	ldr	r3, .L50
	ldr	r2, [r2, #-12]
.LPIC25:
	add	r3, pc
	ldr	r1, .L50+4
	add	r4, r3, #12
	add	r5, r3, #76
	str	r4, [r0, r2]
	adds	r4, r0, r2
.LPIC28:
	add	r1, pc
	adds	r3, r3, #120
	adds	r1, r1, #4
	mov	r0, r4
	str	r3, [r4, #32]
	str	r5, [r4, #4]
	bl	_ZN7utility16VirtualPutStreamD2Ev(PLT)
	add	r0, r4, #32
	bl	_ZN7utility6BufferD2Ev(PLT)
	mov	r0, r4
	bl	_ZN7utility6BufferdlEPv(PLT)
	mov	r0, r4
	pop	{r3, r4, r5, pc}
.L51:
	.align	2
.L50:
	.word	.LANCHOR0-(.LPIC25+4)
	.word	.LANCHOR1-(.LPIC28+4)
	.fnend
	.size	_ZTv0_n12_N12_GLOBAL__N_19BracketedD0Ev, .-_ZTv0_n12_N12_GLOBAL__N_19BracketedD0Ev
	.section	.text._ZN9framework9ExceptionC2ERKS0_,"axG",%progbits,_ZN9framework9ExceptionC5ERKS0_,comdat
	.align	1
	.p2align 2,,3
	.weak	_ZN9framework9ExceptionC2ERKS0_
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN9framework9ExceptionC2ERKS0_, %function
_ZN9framework9ExceptionC2ERKS0_:
	.fnstart
.LFB117:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r2, .L54
	mov	r3, r0
	ldr	ip, .L54+4
.LPIC29:
	add	r2, pc
	push	{r4, r5, r6, lr}
	.save {r4, r5, r6, lr}
	mov	r5, r0
	mov	r4, r1
	ldr	r2, [r2, ip]
	adds	r2, r2, #8
	str	r2, [r3], #4
	ldr	r6, [r1, #4]	@ unaligned
	ldr	r0, [r1, #8]	@ unaligned
	ldr	r2, [r4, #16]	@ unaligned
	ldr	r1, [r1, #12]	@ unaligned
	str	r6, [r5, #4]	@ unaligned
	mov	r6, #256
	str	r0, [r3, #4]	@ unaligned
	add	r0, r5, #20
	str	r1, [r3, #8]	@ unaligned
	add	r1, r4, #20
	str	r2, [r3, #12]	@ unaligned
	mov	r2, r6
	bl	memcpy(PLT)
	mov	r2, r6
	add	r1, r4, #276
	add	r0, r5, #276
	bl	memcpy(PLT)
	mov	r0, r5
	pop	{r4, r5, r6, pc}
.L55:
	.align	2
.L54:
	.word	_GLOBAL_OFFSET_TABLE_-(.LPIC29+4)
	.word	_ZTVN9framework9ExceptionE(GOT)
	.fnend
	.size	_ZN9framework9ExceptionC2ERKS0_, .-_ZN9framework9ExceptionC2ERKS0_
	.weak	_ZN9framework9ExceptionC1ERKS0_
	.thumb_set _ZN9framework9ExceptionC1ERKS0_,_ZN9framework9ExceptionC2ERKS0_
	.section	.text._ZN9framework9ExceptionD2Ev,"axG",%progbits,_ZN9framework9ExceptionD5Ev,comdat
	.align	1
	.p2align 2,,3
	.weak	_ZN9framework9ExceptionD2Ev
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN9framework9ExceptionD2Ev, %function
_ZN9framework9ExceptionD2Ev:
	.fnstart
.LFB120:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r3, .L58
	ldr	r2, .L58+4
.LPIC30:
	add	r3, pc
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
	ldr	r3, [r3, r2]
	adds	r3, r3, #8
	str	r3, [r0]
	bl	_ZNSt9exceptionD2Ev(PLT)
	mov	r0, r4
	pop	{r4, pc}
.L59:
	.align	2
.L58:
	.word	_GLOBAL_OFFSET_TABLE_-(.LPIC30+4)
	.word	_ZTVN9framework9ExceptionE(GOT)
	.fnend
	.size	_ZN9framework9ExceptionD2Ev, .-_ZN9framework9ExceptionD2Ev
	.weak	_ZN9framework9ExceptionD1Ev
	.thumb_set _ZN9framework9ExceptionD1Ev,_ZN9framework9ExceptionD2Ev
	.section	.text._ZN9framework9ExceptionD0Ev,"axG",%progbits,_ZN9framework9ExceptionD5Ev,comdat
	.align	1
	.p2align 2,,3
	.weak	_ZN9framework9ExceptionD0Ev
	.syntax unified
	.thumb
	.thumb_func
	.type	_ZN9framework9ExceptionD0Ev, %function
_ZN9framework9ExceptionD0Ev:
	.fnstart
.LFB122:
	@ args = 0, pretend = 0, frame = 0
	@ frame_needed = 0, uses_anonymous_args = 0
	ldr	r3, .L62
	ldr	r2, .L62+4
.LPIC31:
	add	r3, pc
	push	{r4, lr}
	.save {r4, lr}
	mov	r4, r0
	ldr	r3, [r3, r2]
	adds	r3, r3, #8
	str	r3, [r0]
	bl	_ZNSt9exceptionD2Ev(PLT)
	mov	r0, r4
	mov	r1, #532
	bl	_ZdlPvj(PLT)
	mov	r0, r4
	pop	{r4, pc}
.L63:
	.align	2
.L62:
	.word	_GLOBAL_OFFSET_TABLE_-(.LPIC31+4)
	.word	_ZTVN9framework9ExceptionE(GOT)
	.fnend
	.size	_ZN9framework9ExceptionD0Ev, .-_ZN9framework9ExceptionD0Ev
	.section	.rodata.str1.4
	.align	2
.LC1:
	.ascii	"ports\000"
	.align	2
.LC2:
	.ascii	"%s=%d\000"
	.align	2
.LC3:
	.ascii	"%s %d\012\000"
	.align	2
.LC4:
	.ascii	"abcdef\000"
	.align	2
.LC5:
	.ascii	"ghijkl\000"
	.align	2
.LC6:
	.ascii	"%d %d %d\012\000"
	.align	2
.LC7:
	.ascii	"500A09818D5F1234\000"
	.align	2
.LC8:
	.ascii	"%s \000"
	.align	2
.LC9:
	.ascii	"FE80::1\000"
	.align	2
.LC10:
	.ascii	"abc://node:8080/a%20b?x=1\000"
	.align	2
.LC11:
	.ascii	"too long\000"
	.align	2
.LC12:
	.ascii	"%u %s\012\000"
	.section	.text.startup,"ax",%progbits
	.align	1
	.p2align 2,,3
	.global	main
	.syntax unified
	.thumb
	.thumb_func
	.type	main, %function
main:
	.fnstart
.LFB1769:
	@ args = 0, pretend = 0, frame = 248
	@ frame_needed = 0, uses_anonymous_args = 0
	push	{r4, r5, r6, r7, r8, lr}
	.save {r4, r5, r6, r7, r8, lr}
	movs	r2, #32
	ldr	r7, .L110
	.pad #256
	sub	sp, sp, #256
	add	r6, sp, #56
	add	r4, sp, #24
	mov	r1, r4
	mov	r0, r6
.LEHB0:
	bl	_ZN7utility9PutStreamC1EPci(PLT)
.LEHE0:
	ldr	r2, .L110+4
	ldr	r1, .L110+8
	movs	r3, #4
.LPIC32:
	add	r2, pc
	mov	r0, r6
.LPIC33:
	add	r1, pc
.LPIC44:
	add	r7, pc
.LEHB1:
	bl	_ZN7utility9PutStream4PutFEPKcz(PLT)
	add	r0, sp, #68
	bl	_ZNK7utility6Buffer13ReadAvailableEv(PLT)
	mov	r2, r0
	ldr	r0, .L110+12
	mov	r1, r4
.LPIC34:
	add	r0, pc
	bl	printf(PLT)
.LEHE1:
	ldr	r3, .L110+16
	add	r8, sp, #144
	mov	r0, r8
.LPIC35:
	add	r3, pc
	adds	r3, r3, #152
	str	r3, [sp, #12]
.LEHB2:
	bl	_ZN7utility6BufferC2Ev(PLT)
.LEHE2:
	ldr	r1, .L110+20
	add	r4, sp, #12
	add	r5, sp, #112
	movs	r3, #8
.LPIC36:
	add	r1, pc
	movs	r0, #4
	adds	r1, r1, #4
	strd	r3, r0, [sp]
	mov	r2, r4
	add	r3, sp, #16
	mov	r0, r5
.LEHB3:
	bl	_ZN7utility16VirtualPutStreamC2ERN9framework12OutputStreamEPcii(PLT)
.LEHE3:
	ldr	r3, .L110+24
	mov	r0, r5
	ldr	r1, .L110+28
.LPIC37:
	add	r3, pc
.LPIC40:
	add	r1, pc
	add	r2, r3, #12
	str	r2, [sp, #112]
	add	r2, r3, #76
	adds	r3, r3, #120
	str	r2, [sp, #116]
	str	r3, [sp, #144]
.LEHB4:
	bl	_ZN7utility9PutStream4PutSEPKc(PLT)
	ldr	r1, .L110+32
	mov	r0, r5
.LPIC41:
	add	r1, pc
	bl	_ZN7utility9PutStream4PutSEPKc(PLT)
	mov	r0, r5
	bl	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv(PLT)
	movs	r0, #10
	bl	putchar(PLT)
.LEHE4:
	mov	r0, r5
	bl	_ZN12_GLOBAL__N_19BracketedD1Ev(PLT)
	ldr	r3, .L110+36
	mov	r0, r4
	movs	r4, #0
.LPIC42:
	add	r3, pc
	adds	r3, r3, #152
	str	r3, [sp, #12]
	bl	_ZN9framework12OutputStreamD2Ev(PLT)
	mov	r0, r6
	bl	_ZN7utility9PutStreamD1Ev(PLT)
	movs	r1, #2
	mov	r0, r6
.LEHB5:
	bl	_ZN7utility8IntArrayC1Ej(PLT)
.LEHE5:
	b	.L68
.L109:
	ldr	r2, [sp, #68]
	adds	r4, r4, #1
	adds	r0, r3, #1
	cmp	r4, #5
	str	r0, [sp, #60]
	str	r1, [r2, r3, lsl #2]
	beq	.L108
.L68:
	ldrd	r3, r2, [sp, #60]
	mul	r1, r4, r4
	cmp	r3, r2
	bcs	.L71
	ldr	r2, .L110+40
	ldr	r2, [r7, r2]
	ldr	r2, [r2, #52]
	lsls	r2, r2, #5
	bpl	.L109
.L71:
	mov	r0, r6
.LEHB6:
	bl	_ZN7utility8IntArray12appendTracedEi(PLT)
	adds	r4, r4, #1
	cmp	r4, #5
	bne	.L68
.L108:
	ldr	r1, [sp, #60]
	cmp	r1, #0
	beq	.L86
	ldr	r3, [sp, #68]
	movs	r4, #0
	add	r1, r3, r1, lsl #2
.L74:
	ldr	r2, [r3], #4
	add	r4, r4, r2
	cmp	r3, r1
	bne	.L74
.L73:
	movs	r1, #0
	mov	r0, r5
	bl	_ZN7utility4ListC1Eb(PLT)
.LEHE6:
	movs	r0, #8
.LEHB7:
	bl	_Znwj(PLT)
	ldr	r3, .L110+44
	mov	r1, r0
.LPIC45:
	add	r3, pc
	adds	r3, r3, #32
	str	r3, [r0]
	movs	r3, #1
	str	r3, [r0, #4]
	mov	r0, r5
	bl	_ZN7utility4List7addLastEPNS_15ListContainableE(PLT)
	movs	r0, #8
	bl	_Znwj(PLT)
	ldr	r3, .L110+48
	mov	r1, r0
.LPIC46:
	add	r3, pc
	adds	r3, r3, #32
	str	r3, [r0]
	movs	r3, #2
	str	r3, [r0, #4]
	mov	r0, r5
	bl	_ZN7utility4List8addFirstEPNS_15ListContainableE(PLT)
	movs	r1, #0
	mov	r0, r5
	bl	_ZN7utility4List11removeFirstEb(PLT)
	ldr	r8, [r0, #4]
	mov	r7, r0
	mov	r0, r5
	bl	_ZNK7utility4List5countEv(PLT)
	mov	r3, r0
	ldr	r0, .L110+52
	mov	r2, r8
	mov	r1, r4
.LPIC47:
	add	r0, pc
	bl	printf(PLT)
	mov	r0, r7
	bl	_ZN12_GLOBAL__N_14PortD0Ev(PLT)
	movs	r1, #0
	mov	r0, r5
	bl	_ZN7utility4List11removeFirstEb(PLT)
.LEHE7:
	cbz	r0, .L75
	ldr	r3, [r0]
	ldr	r3, [r3, #4]
	blx	r3
.L75:
	mov	r0, r5
	ldr	r4, .L110+56
	bl	_ZN7utility4ListD1Ev(PLT)
	mov	r0, r6
	bl	_ZN7utility8IntArrayD1Ev(PLT)
	ldr	r1, .L110+60
	mov	r0, r6
.LPIC49:
	add	r4, pc
.LPIC48:
	add	r1, pc
.LEHB8:
	bl	_ZN7utility3WWNC1EPKc(PLT)
	movs	r2, #64
	mov	r1, r5
	mov	r0, r6
	bl	_ZNK7utility3WWN8toBufferEPcj(PLT)
	mov	r1, r5
	mov	r0, r4
	bl	printf(PLT)
	ldr	r1, .L110+64
	mov	r0, r6
.LPIC50:
	add	r1, pc
	bl	_ZN7utility11IPV6AddressC1EPKc(PLT)
	movs	r2, #64
	mov	r1, r5
	mov	r0, r6
	bl	_ZNK7utility11IPV6Address8toBufferEPcj(PLT)
	mov	r1, r5
	mov	r0, r4
	bl	printf(PLT)
	ldr	r1, .L110+68
	mov	r0, r6
.LPIC52:
	add	r1, pc
	bl	_ZN7utility3URLC1EPKc(PLT)
.LEHE8:
	ldr	r0, [sp, #80]
.LEHB9:
	bl	puts(PLT)
.LEHE9:
	mov	r0, r6
	bl	_ZN7utility3URLD1Ev(PLT)
	movs	r2, #4
	mov	r1, r6
	mov	r0, r5
.LEHB10:
	bl	_ZN7utility9PutStreamC1EPci(PLT)
.LEHE10:
	ldr	r1, .L110+72
	mov	r0, r5
.LPIC53:
	add	r1, pc
.LEHB11:
	bl	_ZN7utility9PutStream4PutSEPKc(PLT)
.LEHE11:
	mov	r0, r5
	bl	_ZN7utility9PutStreamD1Ev(PLT)
.L105:
	movs	r0, #0
	add	sp, sp, #256
	@ sp needed
	pop	{r4, r5, r6, r7, r8, pc}
.L86:
	mov	r4, r1
	b	.L73
.L92:
	mov	r0, r5
	bl	_ZN7utility4ListD1Ev(PLT)
.L78:
	mov	r0, r6
	bl	_ZN7utility8IntArrayD1Ev(PLT)
.LEHB12:
	bl	__cxa_end_cleanup(PLT)
.L91:
	b	.L78
.L95:
	mov	r0, r5
	bl	_ZN12_GLOBAL__N_19BracketedD1Ev(PLT)
.L67:
	ldr	r3, .L110+76
	mov	r0, r4
.LPIC43:
	add	r3, pc
	adds	r3, r3, #152
	str	r3, [sp, #12]
	bl	_ZN9framework12OutputStreamD2Ev(PLT)
.L70:
	mov	r0, r6
	bl	_ZN7utility9PutStreamD1Ev(PLT)
	bl	__cxa_end_cleanup(PLT)
.LEHE12:
.L96:
	mov	r0, r8
	bl	_ZN7utility6BufferD2Ev(PLT)
	b	.L67
.L94:
	add	r4, sp, #12
	b	.L67
.L93:
	b	.L70
.L89:
	mov	r4, r0
	mov	r6, r1
	mov	r0, r5
	bl	_ZN7utility9PutStreamD1Ev(PLT)
	mov	r0, r4
	mov	r3, r6
.L82:
	cmp	r3, #1
	bne	.L107
	bl	__cxa_begin_catch(PLT)
	ldr	r5, [r0, #4]
	mov	r4, r0
.LEHB13:
	bl	_ZNK9framework9Exception4fileEv(PLT)
	mov	r2, r0
	ldr	r0, .L110+80
	mov	r1, r5
.LPIC54:
	add	r0, pc
	bl	printf(PLT)
.LEHE13:
	ldr	r3, [r4]
	mov	r0, r4
	ldr	r3, [r3, #4]
	blx	r3
	bl	__cxa_end_catch(PLT)
	b	.L105
.L88:
	mov	r3, r1
	b	.L82
.L90:
	mov	r0, r6
	bl	_ZN7utility3URLD1Ev(PLT)
.LEHB14:
	bl	__cxa_end_cleanup(PLT)
.L87:
	bl	__cxa_end_catch(PLT)
.L107:
	bl	__cxa_end_cleanup(PLT)
.LEHE14:
.L111:
	.align	2
.L110:
	.word	_GLOBAL_OFFSET_TABLE_-(.LPIC44+4)
	.word	.LC1-(.LPIC32+4)
	.word	.LC2-(.LPIC33+4)
	.word	.LC3-(.LPIC34+4)
	.word	.LANCHOR0-(.LPIC35+4)
	.word	.LANCHOR1-(.LPIC36+4)
	.word	.LANCHOR0-(.LPIC37+4)
	.word	.LC4-(.LPIC40+4)
	.word	.LC5-(.LPIC41+4)
	.word	.LANCHOR0-(.LPIC42+4)
	.word	_ZN7utility5Debug6m_bitsE(GOT)
	.word	.LANCHOR1-(.LPIC45+4)
	.word	.LANCHOR1-(.LPIC46+4)
	.word	.LC6-(.LPIC47+4)
	.word	.LC8-(.LPIC49+4)
	.word	.LC7-(.LPIC48+4)
	.word	.LC9-(.LPIC50+4)
	.word	.LC10-(.LPIC52+4)
	.word	.LC11-(.LPIC53+4)
	.word	.LANCHOR0-(.LPIC43+4)
	.word	.LC12-(.LPIC54+4)
	.global	__gxx_personality_v0
	.personality	__gxx_personality_v0
	.handlerdata
	.align	2
.LLSDA1769:
	.byte	0xff
	.byte	0x90
	.uleb128 .LLSDATT1769-.LLSDATTD1769
.LLSDATTD1769:
	.byte	0x1
	.uleb128 .LLSDACSE1769-.LLSDACSB1769
.LLSDACSB1769:
	.uleb128 .LEHB0-.LFB1769
	.uleb128 .LEHE0-.LEHB0
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB1-.LFB1769
	.uleb128 .LEHE1-.LEHB1
	.uleb128 .L93-.LFB1769
	.uleb128 0
	.uleb128 .LEHB2-.LFB1769
	.uleb128 .LEHE2-.LEHB2
	.uleb128 .L94-.LFB1769
	.uleb128 0
	.uleb128 .LEHB3-.LFB1769
	.uleb128 .LEHE3-.LEHB3
	.uleb128 .L96-.LFB1769
	.uleb128 0
	.uleb128 .LEHB4-.LFB1769
	.uleb128 .LEHE4-.LEHB4
	.uleb128 .L95-.LFB1769
	.uleb128 0
	.uleb128 .LEHB5-.LFB1769
	.uleb128 .LEHE5-.LEHB5
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB6-.LFB1769
	.uleb128 .LEHE6-.LEHB6
	.uleb128 .L91-.LFB1769
	.uleb128 0
	.uleb128 .LEHB7-.LFB1769
	.uleb128 .LEHE7-.LEHB7
	.uleb128 .L92-.LFB1769
	.uleb128 0
	.uleb128 .LEHB8-.LFB1769
	.uleb128 .LEHE8-.LEHB8
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB9-.LFB1769
	.uleb128 .LEHE9-.LEHB9
	.uleb128 .L90-.LFB1769
	.uleb128 0
	.uleb128 .LEHB10-.LFB1769
	.uleb128 .LEHE10-.LEHB10
	.uleb128 .L88-.LFB1769
	.uleb128 0x1
	.uleb128 .LEHB11-.LFB1769
	.uleb128 .LEHE11-.LEHB11
	.uleb128 .L89-.LFB1769
	.uleb128 0x3
	.uleb128 .LEHB12-.LFB1769
	.uleb128 .LEHE12-.LEHB12
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB13-.LFB1769
	.uleb128 .LEHE13-.LEHB13
	.uleb128 .L87-.LFB1769
	.uleb128 0
	.uleb128 .LEHB14-.LFB1769
	.uleb128 .LEHE14-.LEHB14
	.uleb128 0
	.uleb128 0
.LLSDACSE1769:
	.byte	0x1
	.byte	0
	.byte	0
	.byte	0x7d
	.align	2
	.word	_ZTIPN9framework9ExceptionE(TARGET2)
.LLSDATT1769:
	.section	.text.startup
	.fnend
	.size	main, .-main
	.weak	_ZTSPN9framework9ExceptionE
	.section	.rodata._ZTSPN9framework9ExceptionE,"aG",%progbits,_ZTSPN9framework9ExceptionE,comdat
	.align	2
	.type	_ZTSPN9framework9ExceptionE, %object
	.size	_ZTSPN9framework9ExceptionE, 24
_ZTSPN9framework9ExceptionE:
	.ascii	"PN9framework9ExceptionE\000"
	.weak	_ZTIPN9framework9ExceptionE
	.section	.data.rel.ro._ZTIPN9framework9ExceptionE,"awG",%progbits,_ZTIPN9framework9ExceptionE,comdat
	.align	2
	.type	_ZTIPN9framework9ExceptionE, %object
	.size	_ZTIPN9framework9ExceptionE, 16
_ZTIPN9framework9ExceptionE:
	.word	_ZTVN10__cxxabiv119__pointer_type_infoE+8
	.word	_ZTSPN9framework9ExceptionE
	.word	0
	.word	_ZTIN9framework9ExceptionE
	.section	.rodata
	.align	2
	.type	_ZTSN12_GLOBAL__N_14PortE, %object
	.size	_ZTSN12_GLOBAL__N_14PortE, 23
_ZTSN12_GLOBAL__N_14PortE:
	.ascii	"*N12_GLOBAL__N_14PortE\000"
	.space	1
	.type	_ZTSN12_GLOBAL__N_16ScreenE, %object
	.size	_ZTSN12_GLOBAL__N_16ScreenE, 25
_ZTSN12_GLOBAL__N_16ScreenE:
	.ascii	"*N12_GLOBAL__N_16ScreenE\000"
	.space	3
	.type	_ZTSN12_GLOBAL__N_19BracketedE, %object
	.size	_ZTSN12_GLOBAL__N_19BracketedE, 28
_ZTSN12_GLOBAL__N_19BracketedE:
	.ascii	"*N12_GLOBAL__N_19BracketedE\000"
	.section	.data.rel.ro,"aw"
	.align	2
	.set	.LANCHOR0,. + 0
	.type	_ZTVN12_GLOBAL__N_19BracketedE, %object
	.size	_ZTVN12_GLOBAL__N_19BracketedE, 144
_ZTVN12_GLOBAL__N_19BracketedE:
	.word	32
	.word	0
	.word	_ZTIN12_GLOBAL__N_19BracketedE
	.word	_ZN12_GLOBAL__N_19BracketedD1Ev
	.word	_ZN12_GLOBAL__N_19BracketedD0Ev
	.word	_ZN7utility16VirtualPutStream17StartOutputStreamEv
	.word	_ZN7utility16VirtualPutStream15EndOutputStreamEv
	.word	_ZN7utility16VirtualPutStream16SendOutputStreamEPKcj
	.word	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv
	.word	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.word	_ZN7utility16VirtualPutStream18isOutputStreamOpenEv
	.word	_ZN7utility16VirtualPutStream21isOutputStreamInErrorEv
	.word	_ZN7utility16VirtualPutStream19isOutputStreamAtEndEv
	.word	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.word	_ZN7utility16VirtualPutStream4PutBEPKci
	.word	_ZN7utility9PutStream6IndentEi
	.word	_ZNK7utility16VirtualPutStream14WriteRemainingEv
	.word	-4
	.word	_ZTIN12_GLOBAL__N_19BracketedE
	.word	_ZThn4_N12_GLOBAL__N_19BracketedD1Ev
	.word	_ZThn4_N12_GLOBAL__N_19BracketedD0Ev
	.word	_ZN7utility9Decorator13setDecorationENS0_14DecorationTypeE
	.word	_ZN7utility9Decorator13setDecorationENS0_14DecorationTypeEPNS_9PutStreamE
	.word	0
	.word	0
	.word	0
	.word	-32
	.word	-32
	.word	-32
	.word	_ZTIN12_GLOBAL__N_19BracketedE
	.word	_ZTv0_n12_N12_GLOBAL__N_19BracketedD1Ev
	.word	_ZTv0_n12_N12_GLOBAL__N_19BracketedD0Ev
	.word	_ZTv0_n16_NK7utility16VirtualPutStream14WriteRemainingEv
	.word	_ZNK7utility6Buffer13ReadAvailableEv
	.word	_ZN7utility6Buffer12WriteAdvanceEi
	.word	_ZN7utility6Buffer11ReadAdvanceEi
	.type	_ZTVN12_GLOBAL__N_16ScreenE, %object
	.size	_ZTVN12_GLOBAL__N_16ScreenE, 52
_ZTVN12_GLOBAL__N_16ScreenE:
	.word	0
	.word	_ZTIN12_GLOBAL__N_16ScreenE
	.word	_ZN12_GLOBAL__N_16ScreenD1Ev
	.word	_ZN12_GLOBAL__N_16ScreenD0Ev
	.word	_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv
	.word	_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv
	.word	_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj
	.word	_ZN12_GLOBAL__N_16Screen17FlushOutputStreamEv
	.word	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.word	_ZN12_GLOBAL__N_16Screen18isOutputStreamOpenEv
	.word	_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv
	.word	_ZN12_GLOBAL__N_16Screen19isOutputStreamAtEndEv
	.word	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.type	_ZTIN12_GLOBAL__N_14PortE, %object
	.size	_ZTIN12_GLOBAL__N_14PortE, 12
_ZTIN12_GLOBAL__N_14PortE:
	.word	_ZTVN10__cxxabiv120__si_class_type_infoE+8
	.word	_ZTSN12_GLOBAL__N_14PortE
	.word	_ZTIN7utility15ListContainableE
	.type	_ZTIN12_GLOBAL__N_16ScreenE, %object
	.size	_ZTIN12_GLOBAL__N_16ScreenE, 12
_ZTIN12_GLOBAL__N_16ScreenE:
	.word	_ZTVN10__cxxabiv120__si_class_type_infoE+8
	.word	_ZTSN12_GLOBAL__N_16ScreenE
	.word	_ZTIN9framework12OutputStreamE
	.type	_ZTIN12_GLOBAL__N_19BracketedE, %object
	.size	_ZTIN12_GLOBAL__N_19BracketedE, 12
_ZTIN12_GLOBAL__N_19BracketedE:
	.word	_ZTVN10__cxxabiv120__si_class_type_infoE+8
	.word	_ZTSN12_GLOBAL__N_19BracketedE
	.word	_ZTIN7utility16VirtualPutStreamE
	.type	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE, %object
	.size	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE, 116
_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE:
	.word	32
	.word	0
	.word	_ZTIN7utility9PutStreamE
	.word	0
	.word	0
	.word	_ZN7utility9PutStream17StartOutputStreamEv
	.word	_ZN7utility9PutStream15EndOutputStreamEv
	.word	_ZN7utility9PutStream16SendOutputStreamEPKcj
	.word	_ZN9framework12OutputStream17FlushOutputStreamEv
	.word	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.word	_ZN7utility9PutStream18isOutputStreamOpenEv
	.word	_ZN7utility9PutStream21isOutputStreamInErrorEv
	.word	_ZN7utility9PutStream19isOutputStreamAtEndEv
	.word	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.word	_ZN7utility9PutStream4PutBEPKci
	.word	_ZN7utility9PutStream6IndentEi
	.word	0
	.word	0
	.word	0
	.word	0
	.word	-32
	.word	-32
	.word	_ZTIN7utility9PutStreamE
	.word	0
	.word	0
	.word	_ZNK7utility6Buffer14WriteRemainingEv
	.word	_ZNK7utility6Buffer13ReadAvailableEv
	.word	_ZN7utility6Buffer12WriteAdvanceEi
	.word	_ZN7utility6Buffer11ReadAdvanceEi
	.type	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE, %object
	.size	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE, 120
_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE:
	.word	32
	.word	0
	.word	_ZTIN7utility16VirtualPutStreamE
	.word	0
	.word	0
	.word	_ZN7utility16VirtualPutStream17StartOutputStreamEv
	.word	_ZN7utility16VirtualPutStream15EndOutputStreamEv
	.word	_ZN7utility16VirtualPutStream16SendOutputStreamEPKcj
	.word	_ZN7utility16VirtualPutStream17FlushOutputStreamEv
	.word	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.word	_ZN7utility16VirtualPutStream18isOutputStreamOpenEv
	.word	_ZN7utility16VirtualPutStream21isOutputStreamInErrorEv
	.word	_ZN7utility16VirtualPutStream19isOutputStreamAtEndEv
	.word	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.word	_ZN7utility16VirtualPutStream4PutBEPKci
	.word	_ZN7utility9PutStream6IndentEi
	.word	_ZNK7utility16VirtualPutStream14WriteRemainingEv
	.word	0
	.word	0
	.word	0
	.word	-32
	.word	-32
	.word	-32
	.word	_ZTIN7utility16VirtualPutStreamE
	.word	0
	.word	0
	.word	_ZTv0_n16_NK7utility16VirtualPutStream14WriteRemainingEv
	.word	_ZNK7utility6Buffer13ReadAvailableEv
	.word	_ZN7utility6Buffer12WriteAdvanceEi
	.word	_ZN7utility6Buffer11ReadAdvanceEi
	.section	.data.rel.ro.local,"aw"
	.align	2
	.set	.LANCHOR1,. + 0
	.type	_ZTTN12_GLOBAL__N_19BracketedE, %object
	.size	_ZTTN12_GLOBAL__N_19BracketedE, 24
_ZTTN12_GLOBAL__N_19BracketedE:
	.word	_ZTVN12_GLOBAL__N_19BracketedE+12
	.word	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE+12
	.word	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE+12
	.word	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE+92
	.word	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE+96
	.word	_ZTVN12_GLOBAL__N_19BracketedE+120
	.type	_ZTVN12_GLOBAL__N_14PortE, %object
	.size	_ZTVN12_GLOBAL__N_14PortE, 20
_ZTVN12_GLOBAL__N_14PortE:
	.word	0
	.word	_ZTIN12_GLOBAL__N_14PortE
	.word	_ZN12_GLOBAL__N_14PortD1Ev
	.word	_ZN12_GLOBAL__N_14PortD0Ev
	.word	_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE
	.ident	"GCC: (Debian 12.2.0-14) 12.2.0"
	.section	.note.GNU-stack,"",%progbits
