// One fused multiply-add, for the test of the test that looks for them.

double FusedSample(double a, double b, double c);

double FusedSample(double a, double b, double c) {
#if defined(__x86_64__)
  __asm__("vfmadd213sd %2, %1, %0" : "+x"(a) : "x"(b), "x"(c));
#elif defined(__arm__)
  __asm__(".fpu vfpv4\n\tvfma.f64 %P0, %P1, %P2" : "+w"(a) : "w"(b), "w"(c));
#elif defined(__aarch64__)
  __asm__("fmadd %d0, %d0, %d1, %d2" : "+w"(a) : "w"(b), "w"(c));
#endif
  return a * b;
}
