// The C interface from C#: P/Invoke for the functions, a SafeHandle for the records, so that each is released exactly once.
//
// note: out of memory is a C++ exception. On Linux a runtime cannot catch it, and the process ends; a host that has to survive that
// calls through a C++ function of its own that catches. Microsoft's runtime on Windows makes it an SEHException.
using System;
using System.Runtime.InteropServices;

namespace Orva
{
    /// A mesh of the library's: doubles, eight to a corner (position, normal, aux), three corners to a triangle, its outside where
    /// they run counter-clockwise. Released when disposed of, or else by the garbage collector. One thread's at a time.
    public sealed class Mesh : SafeHandle
    {
        public const int DoublesPerCorner = 8;

        // Called by the runtime as well, for what orva_meshd_create returns.
        private Mesh() : base(IntPtr.Zero, true) { }

        public static Mesh Empty() { return Native.orva_meshd_create(0); }

        /// A mesh of its own with these values.
        public static Mesh From(double[] values)
        {
            if (values == null) throw new ArgumentNullException("values");
            if (values.Length % (3 * DoublesPerCorner) != 0)
                throw new ArgumentException("24 doubles make a triangle; there is a part of one too many", "values");
            Mesh mesh = Native.orva_meshd_create(values.Length / DoublesPerCorner);
            if (values.Length > 0) mesh.Read(record => Marshal.Copy(values, 0, record.Vertices, values.Length));
            return mesh;
        }

        public int Triangles
        {
            get
            {
                int corners = 0;
                Read(record => corners = record.Count);
                return corners / 3;
            }
        }

        /// A copy of its values.
        public double[] ToArray()
        {
            double[] values = null;
            Read(record =>
            {
                values = new double[checked(record.Count * DoublesPerCorner)];
                if (values.Length > 0) Marshal.Copy(record.Vertices, values, 0, values.Length);
            });
            return values;
        }

        public override bool IsInvalid { get { return handle == IntPtr.Zero; } }

        protected override bool ReleaseHandle()
        {
            Native.orva_meshd_destroy(handle);
            return true;
        }

        // Shows the record, which stays alive meanwhile, whatever other threads or the garbage collector do.
        internal void Read(Action<MeshD> action)
        {
            bool held = false;
            try
            {
                DangerousAddRef(ref held); // throws where it has been disposed of
                action((MeshD)Marshal.PtrToStructure(handle, typeof(MeshD)));
            }
            finally
            {
                if (held) DangerousRelease();
            }
        }
    }

    public enum Mode
    {
        InTurn,
        Union
        // note: not the parallel union, which never returns where the task scheduler has no thread besides the caller's.
    }

    /// The operations; each gives a new mesh and leaves its operands as they are. An empty operand empties every result.
    public static class Solid
    {
        public static Mesh Union(Mesh a, Mesh b) { return Combine(Native.orva_bspcsg_union_mesh, a, b); }
        public static Mesh Subtract(Mesh a, Mesh b) { return Combine(Native.orva_bspcsg_subtract_mesh, a, b); }
        public static Mesh Intersect(Mesh a, Mesh b) { return Combine(Native.orva_bspcsg_intersect_mesh, a, b); }

        /// What lies in `from` but in none of the cutters, of which there is at least one.
        public static Mesh Subtract(Mesh from, Mesh[] cutters, Mode mode)
        {
            if (from == null) throw new ArgumentNullException("from");
            if (cutters == null) throw new ArgumentNullException("cutters");
            if (cutters.Length == 0) throw new ArgumentException("none: nothing is cut then", "cutters");
            var records = new MeshD[cutters.Length];
            var held = 0;
            var ignored = false;
            try
            {
                for (; held < cutters.Length; ++held)
                {
                    if (cutters[held] == null) throw new ArgumentNullException("cutters");
                    cutters[held].DangerousAddRef(ref ignored);
                    records[held] = (MeshD)Marshal.PtrToStructure(cutters[held].DangerousGetHandle(), typeof(MeshD));
                }
                Mesh output = Mesh.Empty();
                if (mode == Mode.InTurn)
                    Native.orva_bspcsg_subtract_multi_mesh(output, from, records, records.Length);
                else
                    Native.orva_bspcsg_subtract_multi_union_mesh(output, from, records, records.Length);
                return output;
            }
            finally
            {
                while (held > 0) cutters[--held].DangerousRelease();
            }
        }

        private delegate void Operation(Mesh output, Mesh a, Mesh b);

        private static Mesh Combine(Operation operation, Mesh a, Mesh b)
        {
            if (a == null) throw new ArgumentNullException("a");
            if (b == null) throw new ArgumentNullException("b");
            Mesh output = Mesh.Empty();
            operation(output, a, b);
            return output;
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    internal struct MeshD
    {
        public int Count;
        public IntPtr Vertices;
    }

    // A SafeHandle as an argument is kept alive during the call.
    internal static class Native
    {
        private const string Library = "Orva_acc"; // libOrva_acc.so, Orva_acc.dll

        [DllImport(Library)]
        internal static extern Mesh orva_meshd_create(int n);

        [DllImport(Library)]
        internal static extern void orva_meshd_destroy(IntPtr mesh);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_union_mesh(Mesh output, Mesh a, Mesh b);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_subtract_mesh(Mesh output, Mesh a, Mesh b);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_intersect_mesh(Mesh output, Mesh a, Mesh b);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_subtract_multi_mesh(Mesh output, Mesh from, [In] MeshD[] cutters, int count);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_subtract_multi_union_mesh(Mesh output, Mesh from, [In] MeshD[] cutters, int count);
    }
}
