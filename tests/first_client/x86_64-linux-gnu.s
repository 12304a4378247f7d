	.file	"client.cpp"
	.text
	.align 2
	.p2align 4
	.type	_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE, @function
_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE:
.LFB1748:
	.cfi_startproc
	movl	8(%rdi), %eax
	cmpl	%eax, 8(%rsi)
	sete	%al
	ret
	.cfi_endproc
.LFE1748:
	.size	_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE, .-_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv, @function
_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv:
.LFB1750:
	.cfi_startproc
	movl	$1, %eax
	ret
	.cfi_endproc
.LFE1750:
	.size	_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv, .-_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv
	.set	_ZN12_GLOBAL__N_16Screen18isOutputStreamOpenEv,_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv, @function
_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv:
.LFB1751:
	.cfi_startproc
	ret
	.cfi_endproc
.LFE1751:
	.size	_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv, .-_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv
	.set	_ZN12_GLOBAL__N_16Screen17FlushOutputStreamEv,_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv, @function
_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv:
.LFB1754:
	.cfi_startproc
	xorl	%eax, %eax
	ret
	.cfi_endproc
.LFE1754:
	.size	_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv, .-_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv
	.set	_ZN12_GLOBAL__N_16Screen19isOutputStreamAtEndEv,_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv
	.section	.rodata.str1.1,"aMS",@progbits,1
.LC0:
	.string	"[%.*s]"
	.text
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj, @function
_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj:
.LFB1756:
	.cfi_startproc
	movq	%rsi, %rax
	subq	$8, %rsp
	.cfi_def_cfa_offset 16
	leaq	.LC0(%rip), %rdi
	movl	%edx, %esi
	movq	%rax, %rdx
	xorl	%eax, %eax
	call	printf@PLT
	movl	$1, %eax
	addq	$8, %rsp
	.cfi_def_cfa_offset 8
	ret
	.cfi_endproc
.LFE1756:
	.size	_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj, .-_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_19BracketedD1Ev, @function
_ZN12_GLOBAL__N_19BracketedD1Ev:
.LFB2345:
	.cfi_startproc
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	movq	%rdi, %rbx
	leaq	-128(%rax), %rdx
	movq	%rax, %xmm1
	addq	$88, %rax
	movq	%rax, 48(%rdi)
	movq	%rdx, %xmm0
	punpcklqdq	%xmm1, %xmm0
	movups	%xmm0, (%rdi)
	call	_ZN7utility16VirtualPutStreamD2Ev@PLT
	leaq	48(%rbx), %rdi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZN7utility6BufferD2Ev@PLT
	.cfi_endproc
.LFE2345:
	.size	_ZN12_GLOBAL__N_19BracketedD1Ev, .-_ZN12_GLOBAL__N_19BracketedD1Ev
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv, @function
_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv:
.LFB1760:
	.cfi_startproc
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	movq	%rdi, %rbx
	movl	$60, %edi
	call	putchar@PLT
	movq	%rbx, %rdi
	call	_ZN7utility16VirtualPutStream17FlushOutputStreamEv@PLT
	movl	$62, %edi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	putchar@PLT
	.cfi_endproc
.LFE1760:
	.size	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv, .-_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_16ScreenD2Ev, @function
_ZN12_GLOBAL__N_16ScreenD2Ev:
.LFB2348:
	.cfi_startproc
	leaq	16+_ZTVN12_GLOBAL__N_16ScreenE(%rip), %rax
	movq	%rax, (%rdi)
	jmp	_ZN9framework12OutputStreamD2Ev@PLT
	.cfi_endproc
.LFE2348:
	.size	_ZN12_GLOBAL__N_16ScreenD2Ev, .-_ZN12_GLOBAL__N_16ScreenD2Ev
	.set	_ZN12_GLOBAL__N_16ScreenD1Ev,_ZN12_GLOBAL__N_16ScreenD2Ev
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_16ScreenD0Ev, @function
_ZN12_GLOBAL__N_16ScreenD0Ev:
.LFB2350:
	.cfi_startproc
	leaq	16+_ZTVN12_GLOBAL__N_16ScreenE(%rip), %rax
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	movq	%rdi, %rbx
	movq	%rax, (%rdi)
	call	_ZN9framework12OutputStreamD2Ev@PLT
	movq	%rbx, %rdi
	movl	$8, %esi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZdlPvm@PLT
	.cfi_endproc
.LFE2350:
	.size	_ZN12_GLOBAL__N_16ScreenD0Ev, .-_ZN12_GLOBAL__N_16ScreenD0Ev
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_14PortD2Ev, @function
_ZN12_GLOBAL__N_14PortD2Ev:
.LFB2352:
	.cfi_startproc
	leaq	16+_ZTVN12_GLOBAL__N_14PortE(%rip), %rax
	movq	%rax, (%rdi)
	jmp	_ZN7utility15ListContainableD2Ev@PLT
	.cfi_endproc
.LFE2352:
	.size	_ZN12_GLOBAL__N_14PortD2Ev, .-_ZN12_GLOBAL__N_14PortD2Ev
	.set	_ZN12_GLOBAL__N_14PortD1Ev,_ZN12_GLOBAL__N_14PortD2Ev
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_14PortD0Ev, @function
_ZN12_GLOBAL__N_14PortD0Ev:
.LFB2354:
	.cfi_startproc
	leaq	16+_ZTVN12_GLOBAL__N_14PortE(%rip), %rax
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	movq	%rdi, %rbx
	movq	%rax, (%rdi)
	call	_ZN7utility15ListContainableD2Ev@PLT
	movq	%rbx, %rdi
	movl	$16, %esi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZdlPvm@PLT
	.cfi_endproc
.LFE2354:
	.size	_ZN12_GLOBAL__N_14PortD0Ev, .-_ZN12_GLOBAL__N_14PortD0Ev
	.align 2
	.p2align 4
	.type	_ZN12_GLOBAL__N_19BracketedD0Ev, @function
_ZN12_GLOBAL__N_19BracketedD0Ev:
.LFB2346:
	.cfi_startproc
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	movq	%rdi, %rbx
	leaq	-128(%rax), %rdx
	movq	%rax, %xmm1
	addq	$88, %rax
	movq	%rax, 48(%rdi)
	movq	%rdx, %xmm0
	punpcklqdq	%xmm1, %xmm0
	movups	%xmm0, (%rdi)
	call	_ZN7utility16VirtualPutStreamD2Ev@PLT
	leaq	48(%rbx), %rdi
	call	_ZN7utility6BufferD2Ev@PLT
	movq	%rbx, %rdi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZN7utility6BufferdlEPv@PLT
	.cfi_endproc
.LFE2346:
	.size	_ZN12_GLOBAL__N_19BracketedD0Ev, .-_ZN12_GLOBAL__N_19BracketedD0Ev
	.p2align 4
	.type	_ZThn8_N12_GLOBAL__N_19BracketedD0Ev, @function
_ZThn8_N12_GLOBAL__N_19BracketedD0Ev:
.LFB2357:
	.cfi_startproc
	pushq	%rbp
	.cfi_def_cfa_offset 16
	.cfi_offset 6, -16
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	leaq	-8(%rdi), %rbp
	pushq	%rbx
	.cfi_def_cfa_offset 24
	.cfi_offset 3, -24
	leaq	-128(%rax), %rdx
	movq	%rax, %xmm1
	movq	%rdi, %rbx
	addq	$88, %rax
	movq	%rdx, %xmm0
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	punpcklqdq	%xmm1, %xmm0
	subq	$8, %rsp
	.cfi_def_cfa_offset 32
	movq	%rax, 40(%rdi)
	movups	%xmm0, -8(%rdi)
	movq	%rbp, %rdi
	call	_ZN7utility16VirtualPutStreamD2Ev@PLT
	leaq	40(%rbx), %rdi
	call	_ZN7utility6BufferD2Ev@PLT
	addq	$8, %rsp
	.cfi_def_cfa_offset 24
	movq	%rbp, %rdi
	popq	%rbx
	.cfi_def_cfa_offset 16
	popq	%rbp
	.cfi_def_cfa_offset 8
	jmp	_ZN7utility6BufferdlEPv@PLT
	.cfi_endproc
.LFE2357:
	.size	_ZThn8_N12_GLOBAL__N_19BracketedD0Ev, .-_ZThn8_N12_GLOBAL__N_19BracketedD0Ev
	.p2align 4
	.type	_ZTv0_n24_N12_GLOBAL__N_19BracketedD1Ev, @function
_ZTv0_n24_N12_GLOBAL__N_19BracketedD1Ev:
.LFB2358:
	.cfi_startproc
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	movq	(%rdi), %rax
	movq	%rdi, %rbx
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	addq	-24(%rax), %rbx
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	leaq	-128(%rax), %rdx
	movq	%rax, %xmm1
	addq	$88, %rax
	movq	%rbx, %rdi
	movq	%rax, 48(%rbx)
	movq	%rdx, %xmm0
	punpcklqdq	%xmm1, %xmm0
	movups	%xmm0, (%rbx)
	call	_ZN7utility16VirtualPutStreamD2Ev@PLT
	leaq	48(%rbx), %rdi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZN7utility6BufferD2Ev@PLT
	.cfi_endproc
.LFE2358:
	.size	_ZTv0_n24_N12_GLOBAL__N_19BracketedD1Ev, .-_ZTv0_n24_N12_GLOBAL__N_19BracketedD1Ev
	.p2align 4
	.type	_ZThn8_N12_GLOBAL__N_19BracketedD1Ev, @function
_ZThn8_N12_GLOBAL__N_19BracketedD1Ev:
.LFB2359:
	.cfi_startproc
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	movq	%rdi, %rbx
	leaq	-128(%rax), %rdx
	movq	%rax, %xmm1
	addq	$88, %rax
	movq	%rax, 40(%rdi)
	movq	%rdx, %xmm0
	leaq	-8(%rdi), %rdi
	punpcklqdq	%xmm1, %xmm0
	movups	%xmm0, (%rdi)
	call	_ZN7utility16VirtualPutStreamD2Ev@PLT
	leaq	40(%rbx), %rdi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZN7utility6BufferD2Ev@PLT
	.cfi_endproc
.LFE2359:
	.size	_ZThn8_N12_GLOBAL__N_19BracketedD1Ev, .-_ZThn8_N12_GLOBAL__N_19BracketedD1Ev
	.p2align 4
	.type	_ZTv0_n24_N12_GLOBAL__N_19BracketedD0Ev, @function
_ZTv0_n24_N12_GLOBAL__N_19BracketedD0Ev:
.LFB2356:
	.cfi_startproc
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	movq	(%rdi), %rax
	movq	%rdi, %rbx
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	addq	-24(%rax), %rbx
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	leaq	-128(%rax), %rdx
	movq	%rax, %xmm1
	addq	$88, %rax
	movq	%rbx, %rdi
	movq	%rax, 48(%rbx)
	movq	%rdx, %xmm0
	punpcklqdq	%xmm1, %xmm0
	movups	%xmm0, (%rbx)
	call	_ZN7utility16VirtualPutStreamD2Ev@PLT
	leaq	48(%rbx), %rdi
	call	_ZN7utility6BufferD2Ev@PLT
	movq	%rbx, %rdi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZN7utility6BufferdlEPv@PLT
	.cfi_endproc
.LFE2356:
	.size	_ZTv0_n24_N12_GLOBAL__N_19BracketedD0Ev, .-_ZTv0_n24_N12_GLOBAL__N_19BracketedD0Ev
	.section	.text._ZN9framework9ExceptionC2ERKS0_,"axG",@progbits,_ZN9framework9ExceptionC5ERKS0_,comdat
	.align 2
	.p2align 4
	.weak	_ZN9framework9ExceptionC2ERKS0_
	.type	_ZN9framework9ExceptionC2ERKS0_, @function
_ZN9framework9ExceptionC2ERKS0_:
.LFB119:
	.cfi_startproc
	movdqu	8(%rsi), %xmm0
	leaq	16+_ZTVN9framework9ExceptionE(%rip), %rax
	movq	%rax, (%rdi)
	movups	%xmm0, 8(%rdi)
	movdqu	24(%rsi), %xmm1
	movups	%xmm1, 24(%rdi)
	movdqu	40(%rsi), %xmm2
	movups	%xmm2, 40(%rdi)
	movdqu	56(%rsi), %xmm3
	movups	%xmm3, 56(%rdi)
	movdqu	72(%rsi), %xmm4
	movups	%xmm4, 72(%rdi)
	movdqu	88(%rsi), %xmm5
	movups	%xmm5, 88(%rdi)
	movdqu	104(%rsi), %xmm6
	movups	%xmm6, 104(%rdi)
	movdqu	120(%rsi), %xmm7
	movups	%xmm7, 120(%rdi)
	movdqu	136(%rsi), %xmm0
	movups	%xmm0, 136(%rdi)
	movdqu	152(%rsi), %xmm1
	movups	%xmm1, 152(%rdi)
	movdqu	168(%rsi), %xmm2
	movups	%xmm2, 168(%rdi)
	movdqu	184(%rsi), %xmm3
	movups	%xmm3, 184(%rdi)
	movdqu	200(%rsi), %xmm4
	movups	%xmm4, 200(%rdi)
	movdqu	216(%rsi), %xmm5
	movups	%xmm5, 216(%rdi)
	movdqu	232(%rsi), %xmm6
	movups	%xmm6, 232(%rdi)
	movdqu	248(%rsi), %xmm7
	movups	%xmm7, 248(%rdi)
	movdqu	264(%rsi), %xmm0
	movups	%xmm0, 264(%rdi)
	movdqu	280(%rsi), %xmm1
	movups	%xmm1, 280(%rdi)
	movdqu	296(%rsi), %xmm2
	movups	%xmm2, 296(%rdi)
	movdqu	312(%rsi), %xmm3
	movups	%xmm3, 312(%rdi)
	movdqu	328(%rsi), %xmm4
	movups	%xmm4, 328(%rdi)
	movdqu	344(%rsi), %xmm5
	movups	%xmm5, 344(%rdi)
	movdqu	360(%rsi), %xmm6
	movups	%xmm6, 360(%rdi)
	movdqu	376(%rsi), %xmm7
	movups	%xmm7, 376(%rdi)
	movdqu	392(%rsi), %xmm0
	movups	%xmm0, 392(%rdi)
	movdqu	408(%rsi), %xmm1
	movups	%xmm1, 408(%rdi)
	movdqu	424(%rsi), %xmm2
	movups	%xmm2, 424(%rdi)
	movdqu	440(%rsi), %xmm3
	movups	%xmm3, 440(%rdi)
	movdqu	456(%rsi), %xmm4
	movups	%xmm4, 456(%rdi)
	movdqu	472(%rsi), %xmm5
	movups	%xmm5, 472(%rdi)
	movdqu	488(%rsi), %xmm6
	movups	%xmm6, 488(%rdi)
	movdqu	504(%rsi), %xmm7
	movups	%xmm7, 504(%rdi)
	movdqu	520(%rsi), %xmm0
	movups	%xmm0, 520(%rdi)
	ret
	.cfi_endproc
.LFE119:
	.size	_ZN9framework9ExceptionC2ERKS0_, .-_ZN9framework9ExceptionC2ERKS0_
	.weak	_ZN9framework9ExceptionC1ERKS0_
	.set	_ZN9framework9ExceptionC1ERKS0_,_ZN9framework9ExceptionC2ERKS0_
	.section	.text._ZN9framework9ExceptionD2Ev,"axG",@progbits,_ZN9framework9ExceptionD5Ev,comdat
	.align 2
	.p2align 4
	.weak	_ZN9framework9ExceptionD2Ev
	.type	_ZN9framework9ExceptionD2Ev, @function
_ZN9framework9ExceptionD2Ev:
.LFB122:
	.cfi_startproc
	leaq	16+_ZTVN9framework9ExceptionE(%rip), %rax
	movq	%rax, (%rdi)
	jmp	_ZNSt9exceptionD2Ev@PLT
	.cfi_endproc
.LFE122:
	.size	_ZN9framework9ExceptionD2Ev, .-_ZN9framework9ExceptionD2Ev
	.weak	_ZN9framework9ExceptionD1Ev
	.set	_ZN9framework9ExceptionD1Ev,_ZN9framework9ExceptionD2Ev
	.section	.text._ZN9framework9ExceptionD0Ev,"axG",@progbits,_ZN9framework9ExceptionD5Ev,comdat
	.align 2
	.p2align 4
	.weak	_ZN9framework9ExceptionD0Ev
	.type	_ZN9framework9ExceptionD0Ev, @function
_ZN9framework9ExceptionD0Ev:
.LFB124:
	.cfi_startproc
	leaq	16+_ZTVN9framework9ExceptionE(%rip), %rax
	pushq	%rbx
	.cfi_def_cfa_offset 16
	.cfi_offset 3, -16
	movq	%rdi, %rbx
	movq	%rax, (%rdi)
	call	_ZNSt9exceptionD2Ev@PLT
	movq	%rbx, %rdi
	movl	$536, %esi
	popq	%rbx
	.cfi_def_cfa_offset 8
	jmp	_ZdlPvm@PLT
	.cfi_endproc
.LFE124:
	.size	_ZN9framework9ExceptionD0Ev, .-_ZN9framework9ExceptionD0Ev
	.section	.rodata.str1.1
.LC1:
	.string	"ports"
.LC2:
	.string	"%s=%d"
.LC3:
	.string	"%s %d\n"
.LC4:
	.string	"abcdef"
.LC5:
	.string	"ghijkl"
.LC6:
	.string	"%d %d %d\n"
.LC7:
	.string	"500A09818D5F1234"
.LC8:
	.string	"%s "
.LC9:
	.string	"FE80::1"
.LC10:
	.string	"abc://node:8080/a%20b?x=1"
.LC11:
	.string	"too long"
.LC12:
	.string	"%u %s\n"
	.section	.text.unlikely,"ax",@progbits
.LCOLDB13:
	.section	.text.startup,"ax",@progbits
.LHOTB13:
	.p2align 4
	.globl	main
	.type	main, @function
main:
.LFB1771:
	.cfi_startproc
	.cfi_personality 0x9b,DW.ref.__gxx_personality_v0
	.cfi_lsda 0x1b,.LLSDA1771
	pushq	%r14
	.cfi_def_cfa_offset 16
	.cfi_offset 14, -16
	movl	$32, %edx
	pushq	%r13
	.cfi_def_cfa_offset 24
	.cfi_offset 13, -24
	pushq	%r12
	.cfi_def_cfa_offset 32
	.cfi_offset 12, -32
	pushq	%rbp
	.cfi_def_cfa_offset 40
	.cfi_offset 6, -40
	pushq	%rbx
	.cfi_def_cfa_offset 48
	.cfi_offset 3, -48
	subq	$320, %rsp
	.cfi_def_cfa_offset 368
	leaq	48(%rsp), %r12
	leaq	16(%rsp), %rbx
	movq	%rbx, %rsi
	movq	%r12, %rdi
.LEHB0:
	call	_ZN7utility9PutStreamC1EPci@PLT
.LEHE0:
	movl	$4, %ecx
	movq	%r12, %rdi
	xorl	%eax, %eax
	leaq	.LC1(%rip), %rdx
	leaq	.LC2(%rip), %rsi
.LEHB1:
	call	_ZN7utility9PutStream4PutFEPKcz@PLT
	leaq	72(%rsp), %rdi
	call	_ZNK7utility6Buffer13ReadAvailableEv@PLT
	movl	%eax, %edx
	movq	%rbx, %rsi
	leaq	.LC3(%rip), %rdi
	xorl	%eax, %eax
	call	printf@PLT
.LEHE1:
	leaq	160(%rsp), %r14
	leaq	16+_ZTVN12_GLOBAL__N_16ScreenE(%rip), %r13
	movq	%r14, %rdi
	movq	%r13, (%rsp)
.LEHB2:
	call	_ZN7utility6BufferC2Ev@PLT
.LEHE2:
	movq	%rsp, %rbx
	leaq	112(%rsp), %rbp
	leaq	8(%rsp), %rcx
	movl	$4, %r9d
	movl	$8, %r8d
	movq	%rbx, %rdx
	leaq	8+_ZTTN12_GLOBAL__N_19BracketedE(%rip), %rsi
	movq	%rbp, %rdi
.LEHB3:
	call	_ZN7utility16VirtualPutStreamC2ERN9framework12OutputStreamEPcii@PLT
.LEHE3:
	leaq	152+_ZTVN12_GLOBAL__N_19BracketedE(%rip), %rax
	leaq	.LC4(%rip), %rsi
	movq	%rbp, %rdi
	leaq	-128(%rax), %rcx
	movq	%rax, %xmm1
	addq	$88, %rax
	movq	%rcx, %xmm0
	movq	%rax, 160(%rsp)
	punpcklqdq	%xmm1, %xmm0
	movaps	%xmm0, 112(%rsp)
.LEHB4:
	call	_ZN7utility9PutStream4PutSEPKc@PLT
	leaq	.LC5(%rip), %rsi
	movq	%rbp, %rdi
	call	_ZN7utility9PutStream4PutSEPKc@PLT
	movq	%rbp, %rdi
	call	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv
	movl	$10, %edi
	call	putchar@PLT
.LEHE4:
	movq	%rbp, %rdi
	call	_ZN12_GLOBAL__N_19BracketedD1Ev
	movq	%rbx, %rdi
	movq	%r13, (%rsp)
	xorl	%ebx, %ebx
	call	_ZN9framework12OutputStreamD2Ev@PLT
	movq	%r12, %rdi
	call	_ZN7utility9PutStreamD1Ev@PLT
	movl	$2, %esi
	movq	%r12, %rdi
.LEHB5:
	call	_ZN7utility8IntArrayC1Ej@PLT
.LEHE5:
	jmp	.L36
	.p2align 4,,10
	.p2align 3
.L76:
	leal	1(%rax), %edx
	addl	$1, %ebx
	movl	%edx, 56(%rsp)
	movq	64(%rsp), %rdx
	movl	%esi, (%rdx,%rax,4)
	cmpl	$5, %ebx
	je	.L75
.L36:
	movl	%ebx, %esi
	movl	56(%rsp), %eax
	imull	%ebx, %esi
	cmpl	60(%rsp), %eax
	jnb	.L39
	testb	$4, 55+_ZN7utility5Debug6m_bitsE(%rip)
	je	.L76
.L39:
	movq	%r12, %rdi
.LEHB6:
	call	_ZN7utility8IntArray12appendTracedEi@PLT
	addl	$1, %ebx
	cmpl	$5, %ebx
	jne	.L36
.L75:
	movl	56(%rsp), %edx
	testl	%edx, %edx
	je	.L54
	movq	64(%rsp), %rax
	xorl	%ebx, %ebx
	leaq	(%rax,%rdx,4), %rdx
	.p2align 4,,10
	.p2align 3
.L42:
	addl	(%rax), %ebx
	addq	$4, %rax
	cmpq	%rax, %rdx
	jne	.L42
.L41:
	xorl	%esi, %esi
	movq	%rbp, %rdi
	call	_ZN7utility4ListC1Eb@PLT
.LEHE6:
	movl	$16, %edi
.LEHB7:
	call	_Znwm@PLT
	leaq	16+_ZTVN12_GLOBAL__N_14PortE(%rip), %r13
	movl	$1, 8(%rax)
	movq	%rax, %rsi
	movq	%rbp, %rdi
	movq	%r13, (%rax)
	call	_ZN7utility4List7addLastEPNS_15ListContainableE@PLT
	movl	$16, %edi
	call	_Znwm@PLT
	movq	%r13, (%rax)
	movq	%rax, %rsi
	movq	%rbp, %rdi
	movl	$2, 8(%rax)
	call	_ZN7utility4List8addFirstEPNS_15ListContainableE@PLT
	xorl	%esi, %esi
	movq	%rbp, %rdi
	call	_ZN7utility4List11removeFirstEb@PLT
	movq	%rbp, %rdi
	movq	%rax, %r13
	call	_ZNK7utility4List5countEv@PLT
	movl	8(%r13), %edx
	movl	%eax, %ecx
	movl	%ebx, %esi
	leaq	.LC6(%rip), %rdi
	xorl	%eax, %eax
	call	printf@PLT
	movq	%r13, %rdi
	call	_ZN12_GLOBAL__N_14PortD0Ev
	xorl	%esi, %esi
	movq	%rbp, %rdi
	call	_ZN7utility4List11removeFirstEb@PLT
.LEHE7:
	movq	%rax, %rdi
	testq	%rax, %rax
	je	.L43
	movq	(%rax), %rax
	call	*8(%rax)
.L43:
	movq	%rbp, %rdi
	leaq	.LC8(%rip), %rbx
	call	_ZN7utility4ListD1Ev@PLT
	movq	%r12, %rdi
	call	_ZN7utility8IntArrayD1Ev@PLT
	leaq	.LC7(%rip), %rsi
	movq	%rbp, %rdi
.LEHB8:
	call	_ZN7utility3WWNC1EPKc@PLT
	movl	$64, %edx
	movq	%r12, %rsi
	movq	%rbp, %rdi
	call	_ZNK7utility3WWN8toBufferEPcj@PLT
	movq	%r12, %rsi
	movq	%rbx, %rdi
	xorl	%eax, %eax
	call	printf@PLT
	leaq	.LC9(%rip), %rsi
	movq	%rbp, %rdi
	call	_ZN7utility11IPV6AddressC1EPKc@PLT
	movl	$64, %edx
	movq	%r12, %rsi
	movq	%rbp, %rdi
	call	_ZNK7utility11IPV6Address8toBufferEPcj@PLT
	movq	%r12, %rsi
	movq	%rbx, %rdi
	xorl	%eax, %eax
	call	printf@PLT
	movq	%rbp, %rdi
	leaq	.LC10(%rip), %rsi
	call	_ZN7utility3URLC1EPKc@PLT
.LEHE8:
	movq	160(%rsp), %rdi
.LEHB9:
	call	puts@PLT
.LEHE9:
	movq	%rbp, %rdi
	call	_ZN7utility3URLD1Ev@PLT
	movl	$4, %edx
	movq	%r12, %rsi
	movq	%rbp, %rdi
.LEHB10:
	call	_ZN7utility9PutStreamC1EPci@PLT
.LEHE10:
	leaq	.LC11(%rip), %rsi
	movq	%rbp, %rdi
.LEHB11:
	call	_ZN7utility9PutStream4PutSEPKc@PLT
.LEHE11:
	movq	%rbp, %rdi
	call	_ZN7utility9PutStreamD1Ev@PLT
.L70:
	addq	$320, %rsp
	.cfi_remember_state
	.cfi_def_cfa_offset 48
	xorl	%eax, %eax
	popq	%rbx
	.cfi_def_cfa_offset 40
	popq	%rbp
	.cfi_def_cfa_offset 32
	popq	%r12
	.cfi_def_cfa_offset 24
	popq	%r13
	.cfi_def_cfa_offset 16
	popq	%r14
	.cfi_def_cfa_offset 8
	ret
.L54:
	.cfi_restore_state
	xorl	%ebx, %ebx
	jmp	.L41
.L60:
	movq	%rax, %rbx
	jmp	.L45
.L59:
	movq	%rax, %rbx
	jmp	.L46
.L61:
	movq	%rax, %rbp
	jmp	.L38
.L64:
	movq	%rax, %rbp
	jmp	.L34
.L56:
	movq	%rax, %rdi
	movq	%rdx, %rax
	jmp	.L50
.L63:
	movq	%rax, %r14
	jmp	.L37
.L57:
	movq	%rax, %rbx
	movq	%rdx, %r12
	jmp	.L49
.L62:
	movq	%rax, %rbp
	movq	%rsp, %rbx
	jmp	.L35
.L58:
	movq	%rax, %rbx
	jmp	.L48
	.globl	__gxx_personality_v0
	.section	.gcc_except_table,"a",@progbits
	.align 4
.LLSDA1771:
	.byte	0xff
	.byte	0x9b
	.uleb128 .LLSDATT1771-.LLSDATTD1771
.LLSDATTD1771:
	.byte	0x1
	.uleb128 .LLSDACSE1771-.LLSDACSB1771
.LLSDACSB1771:
	.uleb128 .LEHB0-.LFB1771
	.uleb128 .LEHE0-.LEHB0
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB1-.LFB1771
	.uleb128 .LEHE1-.LEHB1
	.uleb128 .L61-.LFB1771
	.uleb128 0
	.uleb128 .LEHB2-.LFB1771
	.uleb128 .LEHE2-.LEHB2
	.uleb128 .L62-.LFB1771
	.uleb128 0
	.uleb128 .LEHB3-.LFB1771
	.uleb128 .LEHE3-.LEHB3
	.uleb128 .L64-.LFB1771
	.uleb128 0
	.uleb128 .LEHB4-.LFB1771
	.uleb128 .LEHE4-.LEHB4
	.uleb128 .L63-.LFB1771
	.uleb128 0
	.uleb128 .LEHB5-.LFB1771
	.uleb128 .LEHE5-.LEHB5
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB6-.LFB1771
	.uleb128 .LEHE6-.LEHB6
	.uleb128 .L59-.LFB1771
	.uleb128 0
	.uleb128 .LEHB7-.LFB1771
	.uleb128 .LEHE7-.LEHB7
	.uleb128 .L60-.LFB1771
	.uleb128 0
	.uleb128 .LEHB8-.LFB1771
	.uleb128 .LEHE8-.LEHB8
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB9-.LFB1771
	.uleb128 .LEHE9-.LEHB9
	.uleb128 .L58-.LFB1771
	.uleb128 0
	.uleb128 .LEHB10-.LFB1771
	.uleb128 .LEHE10-.LEHB10
	.uleb128 .L56-.LFB1771
	.uleb128 0x1
	.uleb128 .LEHB11-.LFB1771
	.uleb128 .LEHE11-.LEHB11
	.uleb128 .L57-.LFB1771
	.uleb128 0x3
.LLSDACSE1771:
	.byte	0x1
	.byte	0
	.byte	0
	.byte	0x7d
	.align 4
	.long	DW.ref._ZTIPN9framework9ExceptionE-.
.LLSDATT1771:
	.section	.text.startup
	.cfi_endproc
	.section	.text.unlikely
	.cfi_startproc
	.cfi_personality 0x9b,DW.ref.__gxx_personality_v0
	.cfi_lsda 0x1b,.LLSDAC1771
	.type	main.cold, @function
main.cold:
.LFSB1771:
.L45:
	.cfi_def_cfa_offset 368
	.cfi_offset 3, -48
	.cfi_offset 6, -40
	.cfi_offset 12, -32
	.cfi_offset 13, -24
	.cfi_offset 14, -16
	movq	%rbp, %rdi
	call	_ZN7utility4ListD1Ev@PLT
.L46:
	movq	%r12, %rdi
	call	_ZN7utility8IntArrayD1Ev@PLT
	movq	%rbx, %rdi
.LEHB12:
	call	_Unwind_Resume@PLT
.L37:
	movq	%rbp, %rdi
	movq	%r14, %rbp
	call	_ZN12_GLOBAL__N_19BracketedD1Ev
	jmp	.L35
.L34:
	movq	%r14, %rdi
	call	_ZN7utility6BufferD2Ev@PLT
.L35:
	movq	%rbx, %rdi
	movq	%r13, (%rsp)
	call	_ZN9framework12OutputStreamD2Ev@PLT
.L38:
	movq	%r12, %rdi
	call	_ZN7utility9PutStreamD1Ev@PLT
	movq	%rbp, %rdi
	call	_Unwind_Resume@PLT
.LEHE12:
.L49:
	movq	%rbp, %rdi
	call	_ZN7utility9PutStreamD1Ev@PLT
	movq	%rbx, %rdi
	movq	%r12, %rax
.L50:
	subq	$1, %rax
	jne	.L77
	call	__cxa_begin_catch@PLT
	movq	%rax, %rdi
	movq	%rax, %rbx
.LEHB13:
	call	_ZNK9framework9Exception4fileEv@PLT
	movl	8(%rbx), %esi
	movq	%rax, %rdx
	leaq	.LC12(%rip), %rdi
	xorl	%eax, %eax
	call	printf@PLT
.LEHE13:
	movq	(%rbx), %rax
	movq	%rbx, %rdi
	call	*8(%rax)
	call	__cxa_end_catch@PLT
	jmp	.L70
.L48:
	movq	%rbp, %rdi
	call	_ZN7utility3URLD1Ev@PLT
	movq	%rbx, %rdi
.LEHB14:
	call	_Unwind_Resume@PLT
.L77:
	call	_Unwind_Resume@PLT
.L55:
	movq	%rax, %rbx
	call	__cxa_end_catch@PLT
	movq	%rbx, %rdi
	call	_Unwind_Resume@PLT
.LEHE14:
	.cfi_endproc
.LFE1771:
	.section	.gcc_except_table
	.align 4
.LLSDAC1771:
	.byte	0xff
	.byte	0x9b
	.uleb128 .LLSDATTC1771-.LLSDATTDC1771
.LLSDATTDC1771:
	.byte	0x1
	.uleb128 .LLSDACSEC1771-.LLSDACSBC1771
.LLSDACSBC1771:
	.uleb128 .LEHB12-.LCOLDB13
	.uleb128 .LEHE12-.LEHB12
	.uleb128 0
	.uleb128 0
	.uleb128 .LEHB13-.LCOLDB13
	.uleb128 .LEHE13-.LEHB13
	.uleb128 .L55-.LCOLDB13
	.uleb128 0
	.uleb128 .LEHB14-.LCOLDB13
	.uleb128 .LEHE14-.LEHB14
	.uleb128 0
	.uleb128 0
.LLSDACSEC1771:
	.byte	0x1
	.byte	0
	.byte	0
	.byte	0x7d
	.align 4
	.long	DW.ref._ZTIPN9framework9ExceptionE-.
.LLSDATTC1771:
	.section	.text.unlikely
	.section	.text.startup
	.size	main, .-main
	.section	.text.unlikely
	.size	main.cold, .-main.cold
.LCOLDE13:
	.section	.text.startup
.LHOTE13:
	.section	.data.rel.ro,"aw"
	.align 8
	.type	_ZTIN12_GLOBAL__N_14PortE, @object
	.size	_ZTIN12_GLOBAL__N_14PortE, 24
_ZTIN12_GLOBAL__N_14PortE:
	.quad	_ZTVN10__cxxabiv120__si_class_type_infoE+16
	.quad	_ZTSN12_GLOBAL__N_14PortE
	.quad	_ZTIN7utility15ListContainableE
	.section	.rodata
	.align 16
	.type	_ZTSN12_GLOBAL__N_14PortE, @object
	.size	_ZTSN12_GLOBAL__N_14PortE, 23
_ZTSN12_GLOBAL__N_14PortE:
	.string	"*N12_GLOBAL__N_14PortE"
	.section	.data.rel.ro
	.align 8
	.type	_ZTIN12_GLOBAL__N_16ScreenE, @object
	.size	_ZTIN12_GLOBAL__N_16ScreenE, 24
_ZTIN12_GLOBAL__N_16ScreenE:
	.quad	_ZTVN10__cxxabiv120__si_class_type_infoE+16
	.quad	_ZTSN12_GLOBAL__N_16ScreenE
	.quad	_ZTIN9framework12OutputStreamE
	.section	.rodata
	.align 16
	.type	_ZTSN12_GLOBAL__N_16ScreenE, @object
	.size	_ZTSN12_GLOBAL__N_16ScreenE, 25
_ZTSN12_GLOBAL__N_16ScreenE:
	.string	"*N12_GLOBAL__N_16ScreenE"
	.section	.data.rel.ro
	.align 8
	.type	_ZTIN12_GLOBAL__N_19BracketedE, @object
	.size	_ZTIN12_GLOBAL__N_19BracketedE, 24
_ZTIN12_GLOBAL__N_19BracketedE:
	.quad	_ZTVN10__cxxabiv120__si_class_type_infoE+16
	.quad	_ZTSN12_GLOBAL__N_19BracketedE
	.quad	_ZTIN7utility16VirtualPutStreamE
	.section	.rodata
	.align 16
	.type	_ZTSN12_GLOBAL__N_19BracketedE, @object
	.size	_ZTSN12_GLOBAL__N_19BracketedE, 28
_ZTSN12_GLOBAL__N_19BracketedE:
	.string	"*N12_GLOBAL__N_19BracketedE"
	.weak	_ZTSPN9framework9ExceptionE
	.section	.rodata._ZTSPN9framework9ExceptionE,"aG",@progbits,_ZTSPN9framework9ExceptionE,comdat
	.align 16
	.type	_ZTSPN9framework9ExceptionE, @object
	.size	_ZTSPN9framework9ExceptionE, 24
_ZTSPN9framework9ExceptionE:
	.string	"PN9framework9ExceptionE"
	.weak	_ZTIPN9framework9ExceptionE
	.section	.data.rel.ro._ZTIPN9framework9ExceptionE,"awG",@progbits,_ZTIPN9framework9ExceptionE,comdat
	.align 8
	.type	_ZTIPN9framework9ExceptionE, @object
	.size	_ZTIPN9framework9ExceptionE, 32
_ZTIPN9framework9ExceptionE:
	.quad	_ZTVN10__cxxabiv119__pointer_type_infoE+16
	.quad	_ZTSPN9framework9ExceptionE
	.long	0
	.zero	4
	.quad	_ZTIN9framework9ExceptionE
	.section	.data.rel.ro.local,"aw"
	.align 8
	.type	_ZTVN12_GLOBAL__N_14PortE, @object
	.size	_ZTVN12_GLOBAL__N_14PortE, 40
_ZTVN12_GLOBAL__N_14PortE:
	.quad	0
	.quad	_ZTIN12_GLOBAL__N_14PortE
	.quad	_ZN12_GLOBAL__N_14PortD1Ev
	.quad	_ZN12_GLOBAL__N_14PortD0Ev
	.quad	_ZNK12_GLOBAL__N_14Port6equalsEPKN7utility15ListContainableE
	.section	.data.rel.ro
	.align 8
	.type	_ZTVN12_GLOBAL__N_16ScreenE, @object
	.size	_ZTVN12_GLOBAL__N_16ScreenE, 104
_ZTVN12_GLOBAL__N_16ScreenE:
	.quad	0
	.quad	_ZTIN12_GLOBAL__N_16ScreenE
	.quad	_ZN12_GLOBAL__N_16ScreenD1Ev
	.quad	_ZN12_GLOBAL__N_16ScreenD0Ev
	.quad	_ZN12_GLOBAL__N_16Screen17StartOutputStreamEv
	.quad	_ZN12_GLOBAL__N_16Screen15EndOutputStreamEv
	.quad	_ZN12_GLOBAL__N_16Screen16SendOutputStreamEPKcj
	.quad	_ZN12_GLOBAL__N_16Screen17FlushOutputStreamEv
	.quad	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.quad	_ZN12_GLOBAL__N_16Screen18isOutputStreamOpenEv
	.quad	_ZN12_GLOBAL__N_16Screen21isOutputStreamInErrorEv
	.quad	_ZN12_GLOBAL__N_16Screen19isOutputStreamAtEndEv
	.quad	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.align 8
	.type	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE, @object
	.size	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE, 232
_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE:
	.quad	48
	.quad	0
	.quad	_ZTIN7utility9PutStreamE
	.quad	0
	.quad	0
	.quad	_ZN7utility9PutStream17StartOutputStreamEv
	.quad	_ZN7utility9PutStream15EndOutputStreamEv
	.quad	_ZN7utility9PutStream16SendOutputStreamEPKcj
	.quad	_ZN9framework12OutputStream17FlushOutputStreamEv
	.quad	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.quad	_ZN7utility9PutStream18isOutputStreamOpenEv
	.quad	_ZN7utility9PutStream21isOutputStreamInErrorEv
	.quad	_ZN7utility9PutStream19isOutputStreamAtEndEv
	.quad	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.quad	_ZN7utility9PutStream4PutBEPKci
	.quad	_ZN7utility9PutStream6IndentEi
	.quad	0
	.quad	0
	.quad	0
	.quad	0
	.quad	-48
	.quad	-48
	.quad	_ZTIN7utility9PutStreamE
	.quad	0
	.quad	0
	.quad	_ZNK7utility6Buffer14WriteRemainingEv
	.quad	_ZNK7utility6Buffer13ReadAvailableEv
	.quad	_ZN7utility6Buffer12WriteAdvanceEi
	.quad	_ZN7utility6Buffer11ReadAdvanceEi
	.align 8
	.type	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE, @object
	.size	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE, 240
_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE:
	.quad	48
	.quad	0
	.quad	_ZTIN7utility16VirtualPutStreamE
	.quad	0
	.quad	0
	.quad	_ZN7utility16VirtualPutStream17StartOutputStreamEv
	.quad	_ZN7utility16VirtualPutStream15EndOutputStreamEv
	.quad	_ZN7utility16VirtualPutStream16SendOutputStreamEPKcj
	.quad	_ZN7utility16VirtualPutStream17FlushOutputStreamEv
	.quad	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.quad	_ZN7utility16VirtualPutStream18isOutputStreamOpenEv
	.quad	_ZN7utility16VirtualPutStream21isOutputStreamInErrorEv
	.quad	_ZN7utility16VirtualPutStream19isOutputStreamAtEndEv
	.quad	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.quad	_ZN7utility16VirtualPutStream4PutBEPKci
	.quad	_ZN7utility9PutStream6IndentEi
	.quad	_ZNK7utility16VirtualPutStream14WriteRemainingEv
	.quad	0
	.quad	0
	.quad	0
	.quad	-48
	.quad	-48
	.quad	-48
	.quad	_ZTIN7utility16VirtualPutStreamE
	.quad	0
	.quad	0
	.quad	_ZTv0_n32_NK7utility16VirtualPutStream14WriteRemainingEv
	.quad	_ZNK7utility6Buffer13ReadAvailableEv
	.quad	_ZN7utility6Buffer12WriteAdvanceEi
	.quad	_ZN7utility6Buffer11ReadAdvanceEi
	.section	.data.rel.ro.local
	.align 8
	.type	_ZTTN12_GLOBAL__N_19BracketedE, @object
	.size	_ZTTN12_GLOBAL__N_19BracketedE, 48
_ZTTN12_GLOBAL__N_19BracketedE:
	.quad	_ZTVN12_GLOBAL__N_19BracketedE+24
	.quad	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE+24
	.quad	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE+24
	.quad	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility9PutStreamE+184
	.quad	_ZTCN12_GLOBAL__N_19BracketedE0_N7utility16VirtualPutStreamE+192
	.quad	_ZTVN12_GLOBAL__N_19BracketedE+240
	.section	.data.rel.ro
	.align 8
	.type	_ZTVN12_GLOBAL__N_19BracketedE, @object
	.size	_ZTVN12_GLOBAL__N_19BracketedE, 288
_ZTVN12_GLOBAL__N_19BracketedE:
	.quad	48
	.quad	0
	.quad	_ZTIN12_GLOBAL__N_19BracketedE
	.quad	_ZN12_GLOBAL__N_19BracketedD1Ev
	.quad	_ZN12_GLOBAL__N_19BracketedD0Ev
	.quad	_ZN7utility16VirtualPutStream17StartOutputStreamEv
	.quad	_ZN7utility16VirtualPutStream15EndOutputStreamEv
	.quad	_ZN7utility16VirtualPutStream16SendOutputStreamEPKcj
	.quad	_ZN12_GLOBAL__N_19Bracketed17FlushOutputStreamEv
	.quad	_ZN9framework12OutputStream23TransferFromInputStreamERNS_11InputStreamE
	.quad	_ZN7utility16VirtualPutStream18isOutputStreamOpenEv
	.quad	_ZN7utility16VirtualPutStream21isOutputStreamInErrorEv
	.quad	_ZN7utility16VirtualPutStream19isOutputStreamAtEndEv
	.quad	_ZN9framework12OutputStream18isOutputStreamGoodEv
	.quad	_ZN7utility16VirtualPutStream4PutBEPKci
	.quad	_ZN7utility9PutStream6IndentEi
	.quad	_ZNK7utility16VirtualPutStream14WriteRemainingEv
	.quad	-8
	.quad	_ZTIN12_GLOBAL__N_19BracketedE
	.quad	_ZThn8_N12_GLOBAL__N_19BracketedD1Ev
	.quad	_ZThn8_N12_GLOBAL__N_19BracketedD0Ev
	.quad	_ZN7utility9Decorator13setDecorationENS0_14DecorationTypeE
	.quad	_ZN7utility9Decorator13setDecorationENS0_14DecorationTypeEPNS_9PutStreamE
	.quad	0
	.quad	0
	.quad	0
	.quad	-48
	.quad	-48
	.quad	-48
	.quad	_ZTIN12_GLOBAL__N_19BracketedE
	.quad	_ZTv0_n24_N12_GLOBAL__N_19BracketedD1Ev
	.quad	_ZTv0_n24_N12_GLOBAL__N_19BracketedD0Ev
	.quad	_ZTv0_n32_NK7utility16VirtualPutStream14WriteRemainingEv
	.quad	_ZNK7utility6Buffer13ReadAvailableEv
	.quad	_ZN7utility6Buffer12WriteAdvanceEi
	.quad	_ZN7utility6Buffer11ReadAdvanceEi
	.hidden	DW.ref._ZTIPN9framework9ExceptionE
	.weak	DW.ref._ZTIPN9framework9ExceptionE
	.section	.data.rel.local.DW.ref._ZTIPN9framework9ExceptionE,"awG",@progbits,DW.ref._ZTIPN9framework9ExceptionE,comdat
	.align 8
	.type	DW.ref._ZTIPN9framework9ExceptionE, @object
	.size	DW.ref._ZTIPN9framework9ExceptionE, 8
DW.ref._ZTIPN9framework9ExceptionE:
	.quad	_ZTIPN9framework9ExceptionE
	.hidden	DW.ref.__gxx_personality_v0
	.weak	DW.ref.__gxx_personality_v0
	.section	.data.rel.local.DW.ref.__gxx_personality_v0,"awG",@progbits,DW.ref.__gxx_personality_v0,comdat
	.align 8
	.type	DW.ref.__gxx_personality_v0, @object
	.size	DW.ref.__gxx_personality_v0, 8
DW.ref.__gxx_personality_v0:
	.quad	__gxx_personality_v0
	.ident	"GCC: (Debian 12.2.0-14+deb12u1) 12.2.0"
	.section	.note.GNU-stack,"",@progbits
